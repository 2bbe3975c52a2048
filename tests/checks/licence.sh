#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Every source file begins with the line that names its licence: licence.sh, in the folder of the project
set -euo pipefail

sources=(
    '*.c' '*.cpp' '*.h' '*.py' '*.sh' '*.cmake' '*.cmake.in' '*CMakeLists.txt'
    '*.css' '*.mjs' '*.mts' '*.ts' '*.tsx'
    .ci/run tools/hooks agent/hgagent.bash.in
)
git ls-files -z -- "${sources[@]}" | xargs -0 awk '
    FNR == 1 { expected = 1 }
    expected && !/^#!/ {
        if (!/^((\/\/|#) SPDX-License-Identifier: MIT|\/\* SPDX-License-Identifier: MIT \*\/)$/) {
            print FILENAME ": does not begin with SPDX-License-Identifier: MIT"
            lacking = 1
        }
        expected = 0
    }
    END { exit lacking || NR == 0 }'
