# Shared by the fake device tools: where the device copy is, and the call log.
# CALTOFAL_DEVICE is the sandbox's run folder (set by caltofal-device).
if [ -z "${CALTOFAL_DEVICE:-}" ]; then
  echo "$(basename "$0"): only runs inside the device sandbox (caltofal-device)" >&2
  exit 127
fi
DEVICE="$CALTOFAL_DEVICE/device"

# One line per call in calls.log: the tool and its arguments, each quoted
# the way a shell reads it back.
log_call() {
  local line
  line=$(printf '%q ' "$@")
  printf '%s\n' "${line% }" >>"$CALTOFAL_DEVICE/calls.log"
}

# Prints a file of the device copy, or says that the device has no such
# thing and fails as the real tool does.
answer() {
  if [ -f "$1" ]; then
    cat "$1"
  else
    printf '%s\n' "$2" >&2
    exit "${3:-1}"
  fi
}
