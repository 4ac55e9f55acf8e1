# What makes a fault in the program harder to use: for the program and its library, not for the
# tests. tests/tst_Hardening.cpp looks for each of these in what was built.
include(CheckPIESupported)
check_pie_supported()

# Checked copies need an optimised build, and the sanitizers check more.
if(MSVC OR PEVORA_SANITIZE OR PEVORA_COVERAGE OR CMAKE_BUILD_TYPE STREQUAL "Debug")
  set(PEVORA_FORTIFY OFF)
else()
  set(PEVORA_FORTIFY ON)
endif()

function(harden target)
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  if(MSVC)
    return()
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    target_compile_options(${target} PRIVATE -fcf-protection)
  endif()
  if(PEVORA_FORTIFY)
    # Some compilers define another level of themselves.
    target_compile_options(${target} PRIVATE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  endif()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE" AND NOT WIN32)
    target_link_options(${target} PRIVATE -Wl,-z,relro,-z,now,-z,noexecstack)
  endif()
endfunction()
