# How buses start the daemon: by a service file, which in the build folder names the program there,
# and by a unit of the user's service manager where that is installed.

include(GNUInstallDirs)

set(VANTOR_SERVICE_DIR ${CMAKE_BINARY_DIR}/share/dbus-1/services)
set(service com.kolbrin.vantorbardaemon)
set(services ${CMAKE_SOURCE_DIR}/Resources/Services)

# A service manager knows nothing of the build folder: there the bus starts the program itself.
set(VANTOR_DAEMON ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/vantorbar-daemon)
set(VANTOR_DAEMON_UNIT "")
configure_file(${services}/${service}.service.in ${VANTOR_SERVICE_DIR}/${service}.service @ONLY)

set(VANTOR_DAEMON ${CMAKE_INSTALL_FULL_LIBEXECDIR}/vantorbar-daemon)
set(VANTOR_DAEMON_UNIT "SystemdService=vantorbar-daemon.service\n")
set(to_install ${CMAKE_BINARY_DIR}/services)
configure_file(${services}/${service}.service.in ${to_install}/${service}.service @ONLY)
configure_file(${services}/vantorbar-daemon.service.in ${to_install}/vantorbar-daemon.service @ONLY)

install(TARGETS vantorbar-daemon DESTINATION ${CMAKE_INSTALL_LIBEXECDIR} COMPONENT daemon)
install(FILES ${to_install}/${service}.service COMPONENT daemon
        DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/services)
install(FILES ${to_install}/vantorbar-daemon.service COMPONENT daemon
        DESTINATION lib/systemd/user)
install(FILES ${services}/${service}.conf COMPONENT daemon
        DESTINATION ${CMAKE_INSTALL_DATADIR}/dbus-1/system.d)
