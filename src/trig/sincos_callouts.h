// The scalar call-outs of the sine and cosine kernels (one lane each).
#pragma once

#include "luxvm.h"

extern "C" {
void orksSin_SC_A11(int i, const lux32f* src, lux32f* dst, luxStatus* status);
void orksSin_SC_LA(int i, const lux32f* src, lux32f* dst, luxStatus* status);
void orksSin_SC_HA(int i, const lux32f* src, lux32f* dst, luxStatus* status);
void orksCos_SC_A11(int i, const lux32f* src, lux32f* dst, luxStatus* status);
void orksCos_SC_LA(int i, const lux32f* src, lux32f* dst, luxStatus* status);
void orksCos_SC_HA(int i, const lux32f* src, lux32f* dst, luxStatus* status);
void orkdSin_SC_LA(int i, const lux64f* src, lux64f* dst, luxStatus* status);
void orkdCos_SC_LA(int i, const lux64f* src, lux64f* dst, luxStatus* status);
void orkdSin_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name);
void orkdCos_SC(int i, const lux64f* src, lux64f* dst, luxStatus* status, const char* name);
}
