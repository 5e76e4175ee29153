# The kinds of target that this project has. Every target of ours is made by one of these
# functions, so that warnings, unity builds and sanitizers are decided in one place.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC OFF)

# The private folder that holds the executables and Contents/: the bundle root of this build.
set(VELTRO_BUNDLE_DIR "${PROJECT_BINARY_DIR}/bundle")

if(VELTRO_SANITIZER)
    add_compile_options(-fsanitize=${VELTRO_SANITIZER} -fno-omit-frame-pointer -g1)
    add_link_options(-fsanitize=${VELTRO_SANITIZER})
endif()

# The tests that draw nothing: what the sanitizers are let near, which know nothing of the toolkit's
# drawing threads and drivers.
add_custom_target(tests_without_window)
add_dependencies(tests_without_window veltro-engine veltro-media veltro-fuzz)

function(veltro_compile_settings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Werror)
    # g++ 12 warns of what its own library's texts do when two of them are joined.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS)
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    set_target_properties(${target} PROPERTIES
        UNITY_BUILD ${VELTRO_UNITY}
        UNITY_BUILD_BATCH_SIZE 0
        POSITION_INDEPENDENT_CODE ON)
endfunction()

# veltro_library(<name> SOURCES <files> [LINK <public libraries>] [LINK_PRIVATE <libraries>])
function(veltro_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK;LINK_PRIVATE")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE ${arg_LINK_PRIVATE})
    veltro_compile_settings(${name})
endfunction()

# veltro_module(<name> SOURCES <files> [LINK <libraries>])
#
# A library that is loaded on first use, from the bundle's Contents/PlugIns/<name>.so. Only what
# its sources mark for export can be looked up in it.
function(veltro_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_library(${name} MODULE ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK})
    veltro_compile_settings(${name})
    set_target_properties(${name} PROPERTIES
        PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY "${VELTRO_BUNDLE_DIR}/Contents/PlugIns")
    target_link_options(${name} PRIVATE -Wl,--exclude-libs,ALL)
endfunction()

# veltro_executable(<name> SOURCES <files> [LINK <libraries>]): a program in the bundle root.
function(veltro_executable name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINK")
    add_executable(${name} ${arg_SOURCES})
    # The loader looks for a name in one library after the other, and most names are this one's: the
    # first place spares a small program a fiftieth of its start.
    if(NOT VELTRO_SANITIZER)
        target_link_options(${name} PRIVATE
            "LINKER:--push-state,--no-as-needed" -lstdc++ "LINKER:--pop-state")
    endif()
    target_link_libraries(${name} PRIVATE ${arg_LINK})
    veltro_compile_settings(${name})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${VELTRO_BUNDLE_DIR}")
    add_dependencies(${name} veltro_bundle)
endfunction()

# veltro_test(<name> SOURCES <files> [LINK <libraries>] [TIMEOUT <seconds>] [NO_CTEST])
#
# A test program, built into the bundle root so that it finds the bundle as the program does.
# Sources with a Q_OBJECT in the .cpp end with #include "tst_<name>.moc".
function(veltro_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "NO_CTEST" "TIMEOUT" "SOURCES;LINK")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK} Qt6::Core Qt6::Test)
    veltro_compile_settings(${name})
    set_target_properties(${name} PROPERTIES
        AUTOMOC ON
        UNITY_BUILD OFF
        RUNTIME_OUTPUT_DIRECTORY "${VELTRO_BUNDLE_DIR}")
    add_dependencies(${name} veltro_bundle)
    if(NOT CMAKE_CURRENT_SOURCE_DIR MATCHES "/tests/ui/")
        add_dependencies(tests_without_window ${name})
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 300)
    endif()
    if(NOT arg_NO_CTEST)
        add_test(NAME ${name} COMMAND ${name})
        set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    endif()
endfunction()

# veltro_qml_module(<name> URI <dotted name> [SOURCES <files>] [QML <files>] [SINGLETONS <QML files>]
#                   [SHADERS <files>] [DEPENDENCIES <modules>] [LINK <public libraries>])
#
# A library whose QML files and QML_ELEMENT classes are imported as <dotted name>. Linking it is
# all that a program needs, besides the import path ":/qt/qml". SINGLETONS are named in QML too.
# DEPENDENCIES are the modules whose types its own types have as properties.
function(veltro_qml_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "URI" "SOURCES;QML;SINGLETONS;SHADERS;DEPENDENCIES;LINK")
    string(REPLACE "." "/" path "${arg_URI}")
    string(REPLACE "." "_" symbol "${arg_URI}")
    set_source_files_properties(${arg_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
    add_library(${name} STATIC ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    qt_add_qml_module(${name}
        URI ${arg_URI}
        VERSION 1.0
        NO_PLUGIN
        RESOURCE_PREFIX /qt/qml
        OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/qml/${path}"
        IMPORT_PATH "${PROJECT_BINARY_DIR}/qml"
        DEPENDENCIES QtQuick ${arg_DEPENDENCIES}
        QML_FILES ${arg_QML})
    target_link_libraries(${name} PUBLIC Qt6::Quick ${arg_LINK})
    if(arg_SHADERS)
        qt_add_shaders(${name} "${name}_shaders" PRECOMPILE BATCHABLE
            PREFIX "/qt/qml/${path}" FILES ${arg_SHADERS})
    endif()
    veltro_compile_settings(${name})
    # The registration includes headers by their bare names, and what the QML compiler writes
    # shadows names of its own.
    target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    target_compile_options(${name} PRIVATE -Wno-shadow)
    # Nothing calls the registration by name, so the linker is told that it is needed.
    string(LENGTH "qml_register_types_${symbol}" length)
    target_link_options(${name} INTERFACE
        "LINKER:--undefined=_Z${length}qml_register_types_${symbol}v")
endfunction()
