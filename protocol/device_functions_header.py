"""Makes device_functions.h from the descriptions of the device interface: lists for the preprocessor."""

import device_interface
from device_interface import INTEGER_SIZES, field_kind

TOP = """\
/*
 * All of device_access.h for the preprocessor, so that whatever has to exist once for every device
 * function or record is not written once for every one of them. This file is made from
 * protocol/device by protocol/generate.py.
 */
#ifndef SMART_ROUTER_SERVICE_DEVICE_FUNCTIONS_H
#define SMART_ROUTER_SERVICE_DEVICE_FUNCTIONS_H

/* clang-format off */
"""
FUNCTIONS = "/* FUNCTION(result, name, (parameters), (arguments)) for each function. */\n"
RECORDS = "/* RECORD(name, FIELD(field) FIELD(field) ...) for each record, with its texts, numbers and arrays. */\n"
BOTTOM = """\
/* clang-format on */

#endif
"""


def device_functions_header(interface):
    functions = [function_row(function) for function in interface.functions.values()]
    records = [record_row(record) for record in interface.records.values()]
    return "\n".join([TOP, FUNCTIONS + table("DEVICE_FUNCTIONS(FUNCTION)", functions),
                      RECORDS + table("DEVICE_RECORDS(RECORD, FIELD)", records), BOTTOM])


def table(head, rows):
    return f"#define {head}" + "".join(f" \\\n    {row}" for row in rows) + "\n"


def function_row(function):
    arguments = function.get("arguments", [])
    parameters = ", ".join(map(device_interface.parameter, arguments)) or "void"
    names = ", ".join(argument["name"] for argument in arguments)
    return (f"FUNCTION({device_interface.function_type(function)}, {function['function']}, "
            f"({parameters}), ({names}))")


def record_row(record):
    fields = [f"FIELD({field['name']})" for field in record["fields"]
              if "length" in field and "points_to" not in field or field_kind(field) in ("text", *INTEGER_SIZES)]
    return f"RECORD({record['record']}, {' '.join(fields)})"
