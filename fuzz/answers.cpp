// SPDX-License-Identifier: MIT
#include "answers.h"

fuzz::Answers &fuzz::answers()
{
    static Answers only;
    return only;
}
