# Sourced by each script with its arguments: --help prints the script's second line.
usage() { sed -n '2s/^# //p' "$0"; }
wrong_usage() { usage >&2; exit 2; }
if [ "${1:-}" = --help ]; then usage; exit 0; fi
