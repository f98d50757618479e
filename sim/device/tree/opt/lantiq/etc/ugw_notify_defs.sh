# Notification identifiers of the service daemon (servd), sourced by the
# shell lines that ask it for an action.
export NOTIFY_WIFI_RADIO_CHANGE=41
export NOTIFY_WIFI_SSID_CHANGE=42
export NOTIFY_WIFI_WPS_ACTION=44
export NOTIFY_WIFI_SCAN_ACTION=45
export NOTIFY_WIFI_ENDPOINT_CHANGE=46
