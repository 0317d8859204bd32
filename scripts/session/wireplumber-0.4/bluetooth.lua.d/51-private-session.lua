-- A private session touches no hardware and asks nothing of the system bus.
bluez_monitor.enabled = false
