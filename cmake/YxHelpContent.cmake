# Where a deployment has its files, relative to the installation prefix: the program finds languages and
# help databases beside itself.
if(WIN32)
    set(YXHELP_APPDIR ".")
else()
    set(YXHELP_APPDIR "${CMAKE_INSTALL_LIBDIR}/yxhelp")
endif()

# Builds a help database from documentation into the program's directory and installs it.
#   yxhelp_add_content(<language tag> TITLE <title> PRODUCT <ini> INPUTS <path>...)
function(yxhelp_add_content tag)
    cmake_parse_arguments(arg "" "TITLE;PRODUCT" "INPUTS" ${ARGN})
    set(output "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    set(database "${output}/${tag}/Help/YXCADHelp.db")
    set(sources)
    set(options)
    foreach(input IN LISTS arg_INPUTS)
        list(APPEND options --input "${input}")
        file(GLOB_RECURSE found CONFIGURE_DEPENDS "${input}/*")
        list(APPEND sources ${found})
    endforeach()
    if(arg_PRODUCT)
        list(APPEND options --product "${arg_PRODUCT}")
        get_filename_component(productDir "${arg_PRODUCT}" DIRECTORY)
        file(GLOB found CONFIGURE_DEPENDS "${productDir}/*")
        list(APPEND sources ${found})
    endif()
    add_custom_command(
        OUTPUT "${database}"
        COMMAND yxhelp-build ${options} --output "${output}" --language ${tag} --title "${arg_TITLE}"
        DEPENDS yxhelp-build ${sources}
        COMMENT "Building the help database for ${tag}"
        VERBATIM)
    add_custom_target(content-${tag} ALL DEPENDS "${database}")
    install(DIRECTORY "${output}/${tag}/Help" DESTINATION "${YXHELP_APPDIR}/${tag}")
endfunction()
