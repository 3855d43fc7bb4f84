# One shape for the build tree and the installed trees, because the program looks for two things
# beside itself: the engine in its own folder, and Qt's plug-ins in Plugins one level above it.
#
#     build tree     bin/                          Plugins -> Qt's own plug-in folder
#     installed      lib/corvane/bin/              lib/corvane/Plugins
#     macOS bundle   Corvane.app/Contents/MacOS/   Corvane.app/Contents/Plugins
#
# The bundle is a component of its own, so that its layout can be looked at elsewhere, too:
# cmake --install build/dev --component bundle
include(GNUInstallDirs)
set(CORVANE_PROGRAM_FOLDER ${PROJECT_BINARY_DIR}/bin)
set(CORVANE_INSTALL_FOLDER lib/corvane)
set(CORVANE_BUNDLE_FOLDER Corvane.app/Contents)

# Everything but the macOS bundle is installed where there are no bundles, and nothing but it where
# there are.
if(APPLE)
    set(CORVANE_SYSTEM_RULES COMPONENT system EXCLUDE_FROM_ALL)
    set(CORVANE_BUNDLE_RULES COMPONENT bundle)
    set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON)
else()
    set(CORVANE_SYSTEM_RULES COMPONENT system)
    set(CORVANE_BUNDLE_RULES COMPONENT bundle EXCLUDE_FROM_ALL)
endif()

function(corvane_install_program target)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CORVANE_PROGRAM_FOLDER})
    install(TARGETS ${target}
        RUNTIME DESTINATION ${CORVANE_INSTALL_FOLDER}/bin ${CORVANE_SYSTEM_RULES})
    install(TARGETS ${target}
        RUNTIME DESTINATION ${CORVANE_BUNDLE_FOLDER}/MacOS ${CORVANE_BUNDLE_RULES})
endfunction()

# corvane_install_plugins(folder rules...)
#
# The link is relative where Qt lies below the prefix: the tree may then be moved as a whole.
function(corvane_install_plugins folder)
    install(CODE "
        set(to \"${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS}\")
        cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX \"\${to}\" below)
        if(below)
            cmake_path(RELATIVE_PATH to BASE_DIRECTORY \"\${CMAKE_INSTALL_PREFIX}/${folder}\")
        endif()
        set(link \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/Plugins\")
        file(MAKE_DIRECTORY \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}\")
        message(STATUS \"Installing: \${link} -> \${to}\")
        file(CREATE_LINK \"\${to}\" \"\${link}\" SYMBOLIC)"
        ${ARGN})
endfunction()

function(corvane_plugins_folder)
    file(CREATE_LINK ${QT6_INSTALL_PREFIX}/${QT6_INSTALL_PLUGINS} ${PROJECT_BINARY_DIR}/Plugins
        SYMBOLIC)
    corvane_install_plugins(${CORVANE_INSTALL_FOLDER} ${CORVANE_SYSTEM_RULES})
    corvane_install_plugins(${CORVANE_BUNDLE_FOLDER} ${CORVANE_BUNDLE_RULES})
endfunction()
