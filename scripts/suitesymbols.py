"""The dynamic symbols of libraries and programs, and the list of those that libvexlitejsapi expects of a suite."""
import pathlib
import subprocess

HERE = pathlib.Path(__file__).resolve().parent
LIST = HERE.parent / "framework/imports.txt"
# What may lie in the suite's executable or in any library of its own.
APPLICATION = "application"


def run(*command, text=None):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, input=text).stdout


def symbols(file, which):
    """The "defined" or the "undefined" ones, with "@" and a version where they have one. Weak ones may stay undefined."""
    lines = run("nm", "--dynamic", f"--{which}-only", "--format=posix", file).splitlines()
    return {name for name, kind, *_ in map(str.split, lines) if which == "defined" or kind == "U"}


def readable(names):
    """{name: how C++ writes it}"""
    names = sorted(names)
    return dict(zip(names, run("c++filt", text="\n".join(names)).splitlines()))


def read_list(text):
    """(library or APPLICATION, how C++ writes the name, name) for each line."""
    return [tuple(line.split("\t")) for line in text.splitlines() if line and not line.startswith("#")]
