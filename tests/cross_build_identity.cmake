# The same sources built for i386 and x86-64 give the same bits: the digests
# of every export's results, statuses and flags must agree, except for the
# kernels seeded by the hardware reciprocal and reciprocal-square-root
# estimates, whose tables differ between processors (and the emulator).
set(estimate_seeded
  luxsInv_32f_A11 luxsInv_32f_A21 luxsDiv_32f_A11 luxsDiv_32f_A21
  luxsSqrt_32f_A11 luxsSqrt_32f_A21 luxsSqrt_64f_A26 luxsSqrt_64f_A50 luxsSqrt_64f_A53
  luxsInvSqrt_32f_A11 luxsInvSqrt_32f_A21 luxsInvSqrt_32f_A24
  luxsInvSqrt_64f_A26 luxsInvSqrt_64f_A50 luxsInvSqrt_64f_A53
  luxsHypot_32f_A11 luxsHypot_32f_A21 luxsHypot_32f_A24
  luxsHypot_64f_A26 luxsHypot_64f_A50 luxsHypot_64f_A53
  luxsPow3o2_32f_A11 luxsPow3o2_32f_A21 luxsPow3o2_32f_A24
  luxsPow3o2_64f_A26 luxsPow3o2_64f_A50 luxsPow3o2_64f_A53
  luxsAsin_32f_A11 luxsAsin_32f_A24 luxsAcos_32f_A11 luxsAcos_32f_A24 luxsAsin_64f_A53 luxsAcos_64f_A53
  luxsAtan_32f_A11 luxsAtan_32f_A21 luxsAtan2_32f_A11 luxsAtan2_32f_A24 luxsAtan2_64f_A50 luxsAtan2_64f_A53
  luxsAsinh_32f_A11 luxsAsinh_32f_A24 luxsAcosh_32f_A11 luxsAcosh_32f_A24 luxsAtanh_32f_A11
  luxsTan_32f_A11)

if(NOT EXISTS "${I386_TOOL}")
  message(STATUS "no i386 build at ${I386_TOOL}: nothing to compare")
  return()
endif()
execute_process(COMMAND "${NATIVE_TOOL}" digest OUTPUT_VARIABLE native RESULT_VARIABLE r1)
execute_process(COMMAND qemu-i386 "${I386_TOOL}" digest OUTPUT_VARIABLE emulated RESULT_VARIABLE r2)
if(NOT r1 EQUAL 0 OR NOT r2 EQUAL 0)
  message(FATAL_ERROR "luxvm digest failed")
endif()
string(REPLACE "\n" ";" native "${native}")
string(REPLACE "\n" ";" emulated "${emulated}")
set(compared 0)
foreach(line IN LISTS native)
  if(line STREQUAL "")
    continue()
  endif()
  string(REGEX MATCH "^[^ ]+" name "${line}")
  list(FIND emulated "${line}" same)
  if(same EQUAL -1)
    list(FIND estimate_seeded "${name}" seeded)
    if(seeded EQUAL -1)
      message(FATAL_ERROR "${name}: the i386 and x86-64 builds give different results")
    endif()
  endif()
  math(EXPR compared "${compared} + 1")
endforeach()
message(STATUS "cross-build identity: ${compared} exports compared")
