# Generation from .api declarations (see docs/declarations.md).
#
#   celdo_api_core(<var> LIBRARY <library.api> API <files...>)
#       generates the member tables of the listed files; appends the sources to <var>.
#   celdo_com_server(<target> LIBRARY <library.api> API <files...> LINK <libraries...> [MANIFEST])
#       builds an in-process COM server <target>.dll: IDL, type library (embedded as TYPELIB 1,
#       every GUID checked), vtable shims and class registry, on the generic COM runtime; with
#       MANIFEST also <target>.manifest beside it, for registration-free activation.
#
# Paths of .api files are relative to the source root; outputs go below ${CMAKE_BINARY_DIR}/gen.

set(CELDO_GEN_DIR ${CMAKE_BINARY_DIR}/gen)
set(CELDO_APIGEN ${CMAKE_SOURCE_DIR}/tools/apigen.py)
# The generator's own sources (the package behind tools/apigen.py):
# an edit to any of them regenerates.
file(GLOB CELDO_DECLGEN_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tools/declgen/*.py)

function(celdo_api_core out_var)
    cmake_parse_arguments(ARG "" "LIBRARY" "API" ${ARGN})
    set(outputs)
    foreach(api IN LISTS ARG_API)
        string(REGEX REPLACE "\\.api$" "" stem ${api})
        list(APPEND outputs ${CELDO_GEN_DIR}/${stem}.gen.hpp ${CELDO_GEN_DIR}/${stem}.gen.cpp)
    endforeach()
    list(TRANSFORM ARG_API PREPEND ${CMAKE_SOURCE_DIR}/ OUTPUT_VARIABLE paths)
    add_custom_command(
        OUTPUT ${outputs}
        COMMAND Python3::Interpreter ${CELDO_APIGEN} --root ${CMAKE_SOURCE_DIR}
                --library ${ARG_LIBRARY} --core ${CELDO_GEN_DIR} ${ARG_API}
        DEPENDS ${CELDO_APIGEN} ${CELDO_DECLGEN_SOURCES} ${paths} ${CMAKE_SOURCE_DIR}/${ARG_LIBRARY}
        COMMENT "Generating member tables from ${ARG_API}"
        VERBATIM)
    list(FILTER outputs INCLUDE REGEX "\\.cpp$")
    set(${out_var} ${${out_var}} ${outputs} PARENT_SCOPE)
endfunction()

function(celdo_com_server target)
    cmake_parse_arguments(ARG "MANIFEST" "LIBRARY" "API;LINK" ${ARGN})
    set(gen ${CELDO_GEN_DIR}/${target})
    set(idl ${gen}/${target}.idl)
    set(shims ${gen}/com/classes.gen.cpp)
    set(tlb ${CMAKE_CURRENT_BINARY_DIR}/${target}.tlb)
    set(header ${gen}/${target}_h.h)
    set(iids ${gen}/${target}_i.c)
    list(TRANSFORM ARG_API PREPEND ${CMAKE_SOURCE_DIR}/ OUTPUT_VARIABLE paths)

    add_custom_command(
        OUTPUT ${idl} ${shims}
        COMMAND Python3::Interpreter ${CELDO_APIGEN} --root ${CMAKE_SOURCE_DIR}
                --library ${ARG_LIBRARY} --idl ${idl} --com ${gen} --idl-header ${target}_h.h ${ARG_API}
        DEPENDS ${CELDO_APIGEN} ${CELDO_DECLGEN_SOURCES} ${paths} ${CMAKE_SOURCE_DIR}/${ARG_LIBRARY}
        COMMENT "Generating the IDL and COM shims of ${target}"
        VERBATIM)
    if(ARG_MANIFEST)
        set(manifest ${CMAKE_BINARY_DIR}/${target}.manifest)
        add_custom_command(
            OUTPUT ${manifest}
            COMMAND Python3::Interpreter ${CELDO_APIGEN} --root ${CMAKE_SOURCE_DIR} --library ${ARG_LIBRARY}
                    --manifest ${manifest} --dll ${target}.dll --version ${PROJECT_VERSION} --arch ${CELDO_WINE_ARCH}
                    ${ARG_API}
            DEPENDS ${CELDO_APIGEN} ${CELDO_DECLGEN_SOURCES} ${paths} ${CMAKE_SOURCE_DIR}/${ARG_LIBRARY}
            COMMENT "Generating the assembly manifest of ${target}"
            VERBATIM)
        add_custom_target(${target}_manifest ALL DEPENDS ${manifest})
    endif()
    set(widl ${CELDO_WIDL} ${CELDO_WIDL_TARGET} -I${CELDO_WINE_INCLUDE} -L${CELDO_STDOLE_DIR})
    add_custom_command(
        OUTPUT ${tlb}
        COMMAND ${widl} -t -o ${tlb} ${idl}
        COMMAND Python3::Interpreter ${CMAKE_SOURCE_DIR}/tools/check_tlb_guids.py ${idl} ${tlb}
        DEPENDS ${idl} ${CMAKE_SOURCE_DIR}/tools/check_tlb_guids.py
        COMMENT "Compiling the type library of ${target}"
        VERBATIM)
    add_custom_command(
        OUTPUT ${header} ${iids}
        COMMAND ${widl} -h -o ${header} ${idl}
        COMMAND ${widl} -u -o ${iids} ${idl}
        DEPENDS ${idl}
        COMMENT "Generating the interface header of ${target}"
        VERBATIM)
    set_source_files_properties(${iids} PROPERTIES COMPILE_OPTIONS -w)

    set(CELDO_TLB ${tlb})
    set(CELDO_MODULE ${target})
    configure_file(${CMAKE_SOURCE_DIR}/com/module.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}.rc PROPERTIES OBJECT_DEPENDS ${tlb})

    # The interface header and GUIDs, for C++ clients of the server.
    add_library(${target}_interfaces STATIC ${iids} ${header})
    # widl's header is not ours to keep warning-free.
    target_include_directories(${target}_interfaces SYSTEM PUBLIC ${gen})

    add_library(${target} SHARED ${shims} ${CMAKE_SOURCE_DIR}/com/module.cpp ${CMAKE_SOURCE_DIR}/com/registration.cpp
        ${CMAKE_SOURCE_DIR}/com/exports.def ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${target}
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
    target_link_libraries(${target} PRIVATE celdo_com ${target}_interfaces ${ARG_LINK} celdo_warnings)
    target_include_directories(${target} SYSTEM PRIVATE ${gen})
    # Static runtime: the DLL must load with nothing beside it but system DLLs. The .def names
    # the exports undecorated; on x86 they resolve to the stdcall symbols.
    target_link_options(${target} PRIVATE -static -static-libgcc -static-libstdc++
        -Wl,--enable-stdcall-fixup $<$<CONFIG:Release>:-s>)
endfunction()
