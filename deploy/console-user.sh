# shellcheck shell=sh
# Read by root's scripts, which define `die STATUS SENTENCE`: who sits at the Mac, and how something is started in that user's
# session.

# What is opened next would take the place of a stream that is closed.
exec </dev/null
(: 3>&2) || exec 2>/dev/null
(: 3>&1) 2>/dev/null || die 2 "the standard output is closed"

# Prints the user's number. Fails when nobody is logged in: at the login window, in the Setup Assistant, as root.
console_user() {
  echo 'show State:/Users/ConsoleUser' | /usr/sbin/scutil | /usr/bin/awk '
    /^  Name : /       { name = $3 }
    /^  UID : [0-9]+$/ { uid = $3 }
    END                { if (name == "loginwindow" || uid < 501) exit 1; print uid }'
}

# Starts a program as the user number $uid, with its arguments; nothing of root's environment gets there.
as_console_user() {
  # shellcheck disable=SC2154  # the reader of this file sets it
  /usr/bin/env -i PATH=/usr/bin:/bin:/usr/sbin:/sbin /bin/launchctl asuser "$uid" /usr/bin/sudo -n -H -u "#$uid" "$@"
}
