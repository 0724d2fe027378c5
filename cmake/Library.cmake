# The library, once for each processor: the same sources, one file name, and (by the rules below) the same bits.
#
# Targets: vornsr (the baseline shared object), vornsr-static, and vornsr-x86-64-v3, vornsr-x86-64-v4.
# A family is one pair of files; the lists of sources are the folders themselves.

file(GLOB_RECURSE vornsr_sources CONFIGURE_DEPENDS
    ${CMAKE_CURRENT_SOURCE_DIR}/vornsr/src/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/vorns/src/*.cpp)
set(vornsr_map ${CMAKE_CURRENT_SOURCE_DIR}/abi/vornsr.map)

# A C linker on C++ objects: CMake would add the run-time library of C++ for them, and the library needs none.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES)

# Bits: no contraction and no relaxed mathematics, ever. Needs: libc and libm, so no run-time library of C++.
add_library(vornsr-flags INTERFACE)
target_compile_options(vornsr-flags INTERFACE
    -ffp-contract=off -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-asynchronous-unwind-tables
    -fvisibility=hidden -fvisibility-inlines-hidden -fno-semantic-interposition
    -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion)
if(VORNSR_SANITIZE)
    target_compile_options(vornsr-flags INTERFACE -fsanitize=${VORNSR_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
endif()

set(vornsr_march_m7 -march=x86-64 -msse3)
set(vornsr_march_x86-64-v3 -march=x86-64-v3)
set(vornsr_march_x86-64-v4 -march=x86-64-v4 -mprefer-vector-width=512)
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # GCC copies structures of vectors in pieces of 16 bytes if it is not told otherwise, and a vector that is loaded from
    # two pieces has to wait until both have left the store buffer.
    list(APPEND vornsr_march_x86-64-v3 -mmove-max=256 -mstore-max=256)
    # Where GCC 12 knows which registers a function of the same file leaves alone, it forgets to clear the upper halves of
    # the others on the way back to the caller, whose narrower instructions then wait for them.
    list(APPEND vornsr_march_x86-64-v3 -fno-ipa-ra)
    list(APPEND vornsr_march_x86-64-v4 -fno-ipa-ra)
    # GCC 12 takes the undefined operands inside its own AVX-512 intrinsics for mistakes of ours.
    list(APPEND vornsr_march_x86-64-v4 -Wno-maybe-uninitialized -Wno-uninitialized)
endif()

# A room is one translation unit: its families share templates, which are then made once, and headers, which are then
# parsed once. Two rooms are not: the arithmetic and the core of the transforms have little to share and much to make, and
# one unit of them would keep a second processor waiting. -DVORNSR_ROOM_UNITS=OFF makes each file a unit again, which is
# quicker where one family is worked on and nothing caches the rest.
option(VORNSR_ROOM_UNITS "Compile each room of the library as one translation unit" ON)
foreach(source IN LISTS vornsr_sources)
    file(RELATIVE_PATH room ${CMAKE_CURRENT_SOURCE_DIR} ${source})
    string(REGEX REPLACE "^([a-z]+)/src/" "\\1/" room ${room})
    if(room MATCHES "^vorns/(arithmetic|fft/core)/")
        continue()
    elseif(room MATCHES "^vornsr/scoring/gauss/(many_rows|folds)/")
        set(room gauss_many_rows)  # the folds take the scores that the other room makes
    elseif(room MATCHES "^vornsr/scoring/gauss/")
        set(room gauss_one_vector)
    elseif(room MATCHES "^vornsr/estimation/columns/")
        set(room estimation_columns)  # much to make, and little to share with the rest of estimation
    elseif(room MATCHES "^vorns/(loops|simd)/|^vornsr/frame/")
        set(room frame)
    else()
        string(REGEX REPLACE "^([a-z]+)/([a-z_]+)/.*" "\\1_\\2" room ${room})
    endif()
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${room})
endforeach()

# Parsed once instead of once a unit; the transforms have too few units to gain by it. Only headers of the compiler stand
# here, so that our own keep including what they need.
set(vornsr_precompiled <algorithm> <bit> <climits> <cmath> <cstddef> <cstdint> <cstring> <limits> <type_traits> <utility>)

function(vornsr_add_objects name processor)
    add_library(${name} OBJECT ${ARGN})
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${VORNSR_ROOM_UNITS} UNITY_BUILD_MODE GROUP)
    target_include_directories(${name} PRIVATE
        ${CMAKE_CURRENT_SOURCE_DIR}/include ${CMAKE_CURRENT_SOURCE_DIR}/vornsr/src ${CMAKE_CURRENT_SOURCE_DIR}/vorns/src)
    target_compile_options(${name} PRIVATE ${vornsr_march_${processor}})
    target_link_libraries(${name} PRIVATE vornsr-flags)
endfunction()

set(vornsr_transforms ${vornsr_sources})
list(FILTER vornsr_transforms INCLUDE REGEX /vorns/src/fft/)
list(FILTER vornsr_sources EXCLUDE REGEX /vorns/src/fft/)

foreach(processor IN LISTS VORNSR_PROCESSORS)
    vornsr_add_objects(vornsr-objects-${processor} ${processor} ${vornsr_sources})
    vornsr_add_objects(vornsr-transforms-${processor} ${processor} ${vornsr_transforms})
    if(processor STREQUAL m7)
        target_precompile_headers(vornsr-objects-${processor} PRIVATE <pmmintrin.h> ${vornsr_precompiled})
    else()
        target_precompile_headers(vornsr-objects-${processor} PRIVATE <immintrin.h> ${vornsr_precompiled})
    endif()
    # The butterflies gain up to a tenth where the compiler orders instructions and forms addresses for Skylake; the
    # 512-bit ones, and the other families, do better with the generic model.
    if(NOT processor STREQUAL x86-64-v4)
        target_compile_options(vornsr-transforms-${processor} PRIVATE -mtune=skylake)
    endif()

    if(processor STREQUAL m7)
        set(target vornsr)
    else()
        set(target vornsr-${processor})
    endif()
    add_library(${target} SHARED
        $<TARGET_OBJECTS:vornsr-objects-${processor}> $<TARGET_OBJECTS:vornsr-transforms-${processor}>)
    set_target_properties(${target} PROPERTIES
        LINKER_LANGUAGE C  # keeps the C++ run-time library out
        OUTPUT_NAME vornsrm7 VERSION 5.1 SOVERSION 5.1  # libvornsrm7.so.5.1 is the file and the soname
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/lib/${processor}
        LINK_DEPENDS ${vornsr_map})
    target_link_options(${target} PRIVATE
        -Wl,--version-script,${vornsr_map} -Wl,-Bsymbolic-functions -Wl,-z,now -Wl,-z,relro -Wl,--build-id=sha1)
    if(VORNSR_SANITIZE)
        target_link_options(${target} PRIVATE -fsanitize=${VORNSR_SANITIZE})
    else()
        target_link_options(${target} PRIVATE -Wl,-z,defs -static-libgcc)
    endif()
    target_link_libraries(${target} PRIVATE m)
    target_include_directories(${target} INTERFACE
        $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endforeach()

add_library(vornsr-static STATIC $<TARGET_OBJECTS:vornsr-objects-m7> $<TARGET_OBJECTS:vornsr-transforms-m7>)
set_target_properties(vornsr-static PROPERTIES OUTPUT_NAME vornsrm7 EXPORT_NAME vornsr-static)
target_link_libraries(vornsr-static INTERFACE m)
target_include_directories(vornsr-static INTERFACE
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

add_library(vornsr::vornsr ALIAS vornsr)
