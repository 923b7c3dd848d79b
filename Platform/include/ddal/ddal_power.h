#pragma once
/// Power: supply units (PSU) and switched feeds.
#include <ddal/ddal.h>

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// State of a switched feed.
typedef enum ddal_power_state_t {
    DDAL_POWER_OFF = 0, ///< no power
    DDAL_POWER_ON = 1   ///< power
} ddal_power_state_t;

/// What a supply unit measured, each the mean of its last samples.
typedef struct ddal_power_psu_average_values_t {
    uint32_t inputVoltageMv;  ///< millivolts
    uint32_t inputCurrentMa;  ///< milliamperes
    uint32_t outputVoltageMv; ///< millivolts
    uint32_t outputCurrentMa; ///< milliamperes
    uint32_t inputPowerMw;    ///< milliwatts
} ddal_power_psu_average_values_t;

/// Tells whether a supply unit is fed with alternating current.
/// @param psu        supply unit, from 0
/// @param[out] isAc  true: alternating, false: direct current; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such supply unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_power_psu_is_ac(uint32_t psu, bool* isAc);

/// Reads over how many samples a supply unit forms its averages.
/// @param psu           supply unit, from 0
/// @param[out] samples  number of samples; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such supply unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_power_psu_samples_number_get(uint32_t psu, uint32_t* samples);

/// Sets over how many samples a supply unit forms its averages; they start anew.
/// @param psu      supply unit, from 0
/// @param samples  number of samples, 1 to 65535
/// @return DDAL_OK, DDAL_NO_DEVICE (no such supply unit), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_power_psu_samples_number_set(uint32_t psu, uint32_t samples);

/// Reads a supply unit's averages.
/// @param psu          supply unit, from 0
/// @param[out] values  the averages; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such supply unit), DDAL_BUSY (not enough samples since the number was set),
///         DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_power_psu_average_values_get(uint32_t psu, ddal_power_psu_average_values_t* values);

/// Switches a feed. The state is kept until changed or until the unit loses power.
/// @param feed   feed number, from 0
/// @param state  DDAL_POWER_OFF or DDAL_POWER_ON
/// @return DDAL_OK (also when it was in that state), DDAL_NO_DEVICE (no such feed), DDAL_INVALID_PARAMETER,
///         DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_power_set(uint32_t feed, ddal_power_state_t state);

/// Reads a feed's state.
/// @param feed        feed number, from 0
/// @param[out] state  DDAL_POWER_OFF or DDAL_POWER_ON; unchanged unless the result is DDAL_OK
/// @return DDAL_OK, DDAL_NO_DEVICE (no such feed), DDAL_INVALID_PARAMETER, DDAL_IO_ERROR
/// Any thread. Blocks up to 50 ms.
int ddal_power_get(uint32_t feed, ddal_power_state_t* state);

#ifdef __cplusplus
}
#endif
