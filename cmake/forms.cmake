# corvane_add_forms(target form.ui...)
#
# Like AUTOUIC, with two more steps. First the texts of branding.cmake are put into the form. Last,
# refill_combos.cmake rewrites how the generated retranslateUi fills combo boxes.
function(corvane_add_forms target)
    set(headers ${CMAKE_CURRENT_BINARY_DIR}/forms)
    foreach(form IN LISTS ARGN)
        cmake_path(GET form STEM name)
        configure_file(${form} ${headers}/${name}.ui @ONLY)
        add_custom_command(
            OUTPUT ${headers}/ui_${name}.h
            COMMAND Qt6::uic -o ${headers}/${name}.uic ${headers}/${name}.ui
            COMMAND ${CMAKE_COMMAND} -DIN=${headers}/${name}.uic -DOUT=${headers}/ui_${name}.h
                    -P ${PROJECT_SOURCE_DIR}/cmake/refill_combos.cmake
            DEPENDS ${headers}/${name}.ui ${PROJECT_SOURCE_DIR}/cmake/refill_combos.cmake
            COMMENT "Form ${name}"
            VERBATIM)
        target_sources(${target} PRIVATE ${headers}/ui_${name}.h)
    endforeach()
    target_include_directories(${target} SYSTEM PUBLIC ${headers})
endfunction()
