# One shape for the build tree and the installed tree, because the program looks for two things
# beside itself: the engine in its own folder, and Qt's plug-ins in Plugins one level above it.
#
#     bin/corvane   bin/corvgs   Plugins -> Qt's own plug-in folder
set(CORVANE_PROGRAM_FOLDER ${PROJECT_BINARY_DIR}/bin)
include(GNUInstallDirs)
set(CORVANE_INSTALL_FOLDER ${CMAKE_INSTALL_LIBDIR}/corvane)

function(corvane_install_program target)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CORVANE_PROGRAM_FOLDER})
    install(TARGETS ${target} RUNTIME DESTINATION ${CORVANE_INSTALL_FOLDER}/bin)
endfunction()

function(corvane_plugins_folder)
    set(plugins ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS})
    file(CREATE_LINK ${plugins} ${PROJECT_BINARY_DIR}/Plugins SYMBOLIC)
    install(FILES ${PROJECT_BINARY_DIR}/Plugins DESTINATION ${CORVANE_INSTALL_FOLDER})
endfunction()
