# How buses start the daemon: by a service file, which in the build folder names the program there,
# and by a unit of the user's service manager where that is installed (Install.cmake).

set(VANTOR_SERVICE_DIR ${CMAKE_BINARY_DIR}/share/dbus-1/services)

# A service manager knows nothing of the build folder: there the bus starts the program itself.
set(VANTOR_DAEMON ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/vantorbar-daemon)
set(VANTOR_DAEMON_UNIT "")
configure_file(${CMAKE_SOURCE_DIR}/Resources/Services/com.kolbrin.vantorbardaemon.service.in
               ${VANTOR_SERVICE_DIR}/com.kolbrin.vantorbardaemon.service @ONLY)
