/* SPDX-License-Identifier: MIT */
/* The fault of the library, which the environment names: FAULT=unterminated_text and so on. */
#ifndef TESTS_CONFORMANCE_FAULT_H
#define TESTS_CONFORMANCE_FAULT_H

int has(const char *fault);

#endif
