# They are part of the system.
add_library(Threads::Threads INTERFACE IMPORTED GLOBAL)
set(Threads_FOUND TRUE)
