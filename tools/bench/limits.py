"""What the guard measures, and how far from the kept figures it lets it go."""

RATIO_ROWS = 200_000
RATIO_ALLOWED = 1.3  # times the kept ratio; generous, because machines have other work
INSTRUCTION_ROWS = 20_000
INSTRUCTIONS_ALLOWED = 1.05  # times the kept count
COMMANDS = {
    "comparison": f"the comparison of {INSTRUCTION_ROWS:,} cases",
    "start": "the start of the program (`--version`)",
}
