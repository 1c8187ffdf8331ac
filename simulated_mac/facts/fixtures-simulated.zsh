# What facts need, made in a simulated Mac, whose tools keep what they know in property lists. The names that it sets
# are the same on a Mac: fixtures-macos.zsh.

describe_system() { print "simulated Mac" }

readonly jobs="$HOME/Library/Application Support/com.apple.launchd/Jobs.plist"

make_scratch() {
  scratch=$HOME/facts-scratch identifier=com.example.facts.$$
  mkdir $scratch
}
remove_scratch() { rm -rf $scratch }

make_fixtures() {
  local fixture
  for fixture; do make_$fixture || return; done
}
remove_fixtures() {
  [[ -z ${process-} ]] || kill -KILL $process 2>/dev/null
  process=
  rm -f $HOME/Library/Preferences/$identifier.plist $jobs
}

write_list() { print -r -- "<plist version=\"1.0\">$2</plist>" >$1 }

# An item labelled "facts" in a keychain of its own.
make_keychain() {
  keychain=$scratch/facts.keychain
  write_list $keychain "<dict><key>entries</key><array><dict><key>label</key><string>facts</string>
    <key>account</key><string>pat</string><key>service</key><string>facts</string></dict></array></dict>"
}
make_locked() { : }  # simulated keychains cannot be locked

# A launch agent whose job sleeps.
make_agent() {
  agent=$scratch/$identifier.plist
  write_list $agent "<dict><key>Label</key><string>$identifier</string></dict>"
}
make_loaded() {
  write_list $jobs "<dict><key>entries</key><array><dict>
    <key>identifier</key><string>$identifier</string><key>path</key><string>$agent</string></dict></array></dict>"
  XPC_SERVICE_NAME=$identifier /host/bin/sleep 600 &
  process=$!
  # Until the shell's child has become that program it has the shell's environment.
  until [[ "$(</proc/$process/environ)" == *XPC_SERVICE_NAME=$identifier* ]]; do zselect -t 1 || true; done
}

# An application that sleeps, known to the system, and a process of it.
make_application() {
  application=$scratch/Facts.app
  mkdir -p $application/Contents/MacOS
  write_list $application/Contents/Info.plist \
    "<dict><key>CFBundleIdentifier</key><string>$identifier</string></dict>"
}

# A preference domain with three tiles of the Dock's form; the second has no URL, the third is Wendle's.
make_tiles() {
  write_list $HOME/Library/Preferences/$identifier.plist "$(<$folder/tiles.xml)"
}

# A process that nobody has waited for yet has ended, too.
has_ended() { [[ ! -r /proc/$1/status || $(</proc/$1/status) == *State:[[:space:]]##Z* ]] }
