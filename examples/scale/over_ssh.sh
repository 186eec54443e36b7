#!/usr/bin/env bash
# Names every file below a folder on several machines that all see it under the same path:
#
#   over_ssh.sh HOSTS_FILE FOLDER >types.jsonl
#
# HOSTS_FILE has one host a line, as ssh knows it; typescout must be installed there. GNU parallel
# deals out 500 files at a time. What a host does not finish, since it went down, is done by another.
set -euo pipefail

# Statuses up to 2 say what the files are; anything above means that the work was not done.
# shellcheck disable=SC2016  # the remote shell expands $?
find "$2" -type f -print0 |
  parallel --null --max-args 500 --sshloginfile "$1" --retries 5 \
    'typescout --jsonl -- {}; [ $? -le 2 ]'
