/* SPDX-License-Identifier: MIT */
/* What this library supports: the one device function of the command GET_SN_INFO. */
#include "smart_router_service/device_access.h"

#include <string.h>

/* On a router, these are read from the board. Each fits its field, and the record has been zeroed,
 * so that the texts end in NUL. */
#define BOARD_MAC "02:00:5E:10:00:01"
#define BOARD_DEVICE_TYPE "EXAMPLE-1"

int32_t devapi_get_sn_info(SnInfo *info)
{
    memcpy(info->MAC, BOARD_MAC, sizeof(BOARD_MAC));
    memcpy(info->tslinkstatus, "0", sizeof("0"));
    memcpy(info->DeviceType, BOARD_DEVICE_TYPE, sizeof(BOARD_DEVICE_TYPE));
    return 0;
}
