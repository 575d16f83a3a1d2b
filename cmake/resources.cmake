# The bundles of resources, copied beside the libraries, where the running code looks for them (see support/bundle.h).
file(GLOB_RECURSE resource_files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/com.*/*)
set(resources_stamp ${CMAKE_BINARY_DIR}/resources.stamp)
file(GLOB bundles CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/com.*)
set(copy_commands)
foreach(bundle ${bundles})
    get_filename_component(name ${bundle} NAME)
    list(APPEND copy_commands COMMAND ${CMAKE_COMMAND} -E rm -rf ${CMAKE_BINARY_DIR}/resources/${name}
                              COMMAND ${CMAKE_COMMAND} -E copy_directory ${bundle} ${CMAKE_BINARY_DIR}/resources/${name})
endforeach()
add_custom_command(OUTPUT ${resources_stamp} ${copy_commands} COMMAND ${CMAKE_COMMAND} -E touch ${resources_stamp}
                   DEPENDS ${resource_files} COMMENT "Copying resources" VERBATIM)
add_custom_target(resources ALL DEPENDS ${resources_stamp})
add_dependencies(support resources)
