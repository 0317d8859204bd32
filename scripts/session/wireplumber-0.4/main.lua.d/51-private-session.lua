-- A private session touches no hardware and asks nothing of the system bus.
alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
default_access.properties["enable-flatpak-portal"] = false
load_script("private-devices.lua")
