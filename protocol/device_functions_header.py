# SPDX-License-Identifier: MIT
"""Generates device_functions.h from the descriptions of the device interface: a list for the preprocessor."""

import device_interface

TOP = """\
/*
 * All functions of device_access.h as a list for the preprocessor, for code that is the same for
 * every device function. This file is generated from protocol/device by protocol/generate.py.
 */
#ifndef SMART_ROUTER_SERVICE_DEVICE_FUNCTIONS_H
#define SMART_ROUTER_SERVICE_DEVICE_FUNCTIONS_H

/* clang-format off */

/* FUNCTION(result, name, (parameters), (arguments)) for each function. */
#define DEVICE_FUNCTIONS(FUNCTION)"""
BOTTOM = """

/* clang-format on */

#endif
"""


def device_functions_header(interface):
    return TOP + "".join(f" \\\n    {row(function)}" for function in interface.functions.values()) + BOTTOM


def row(function):
    arguments = function.get("arguments", [])
    parameters = ", ".join(map(device_interface.parameter, arguments)) or "void"
    names = ", ".join(argument["name"] for argument in arguments)
    return (f"FUNCTION({device_interface.function_type(function)}, {function['function']}, "
            f"({parameters}), ({names}))")
