#!/bin/sh
# Prints the IP address of a mesh unit from its MAC address (any case), as
# the mesh daemon's neighbour table holds it; nothing for an unknown unit.
table="$(dirname "$0")/mac_to_ip.table"
[ $# -eq 1 ] || { echo "usage: $0 MAC" >&2; exit 1; }
awk -v mac="$(printf '%s' "$1" | tr 'a-f' 'A-F')" 'toupper($1) == mac { print $2; exit }' "$table"
