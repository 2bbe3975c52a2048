#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the script that starts the service on OpenWrt with functions in place of procd's, and checks what it would
# start.
#
# usage: procd_test.sh HGAGENT FOLDER_OF_FILES
set -euo pipefail
hgagent=$1
files=$2
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT

[ "$(head -n 1 "$files/hgagent.init")" = '#!/bin/sh /etc/rc.common' ]
dash >"$home/said" <<END
procd_open_instance() { echo open; }
procd_set_param() { echo "\$@"; }
procd_close_instance() { echo close; }
procd_add_reload_trigger() { echo "trigger \$*"; }
. "$files/hgagent.init"
[ "\$USE_PROCD" = 1 ] && start_service && service_triggers
END
diff "$home/said" - <<'END'
open
command /usr/bin/hgagent run --config /etc/hgagent/hgagent.toml
file /etc/hgagent/hgagent.toml
reload_signal HUP
respawn
stderr 1
no_new_privs 1
close
trigger hgagent
END

# The configuration in the package is valid.
"$hgagent" run --check-config --config "$files/hgagent.toml"
