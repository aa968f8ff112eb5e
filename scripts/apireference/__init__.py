"""What scripts/reference makes from types/api.json."""
