"""The TypeScript compiler that types/package-lock.json pins."""
import pathlib
import subprocess
import sys


def compile_errors(node, source, *arguments, cwd):
    """What `tsc` prints of errors, as lines."""
    compiler = pathlib.Path(source, "types/node_modules/typescript/bin/tsc")
    if not compiler.exists():
        sys.exit(f"{compiler} is not there. To install it: npm ci --prefix types (scripts/setup does)")
    result = subprocess.run([node, compiler, *arguments], cwd=cwd, capture_output=True, text=True, check=False)
    lines = (result.stdout + result.stderr).splitlines()
    if result.returncode and not lines:
        sys.exit(f"tsc ended with {result.returncode}")
    return lines
