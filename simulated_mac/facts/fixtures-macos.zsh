# What facts need, made on a Mac, in places that any Mac can spare: a folder of its own in the home folder (Spotlight
# looks at no other [I]), a keychain file, a preference domain, a launch agent and an application of that run's own name.

describe_system() { print "macOS $(sw_vers -productVersion) ($(sw_vers -buildVersion)), $(uname -m)" }

readonly register=/System/Library/Frameworks/CoreServices.framework/Frameworks/LaunchServices.framework/Support/lsregister

make_scratch() {
  identifier=com.example.facts.$$
  scratch=$(mktemp -d $HOME/facts-scratch.XXXXXX) || exit 2
}
remove_scratch() { [[ -z ${scratch-} ]] || rm -rf $scratch }

made=()
make_fixtures() {
  local fixture
  for fixture; do
    made+=($fixture)
    make_$fixture || return
  done
}
remove_fixtures() {
  local fixture
  for fixture in ${(Oa)made}; do
    ((! $+functions[remove_$fixture])) || remove_$fixture >/dev/null 2>&1
  done
  made=()
}

# An item labelled "facts" in a keychain of its own.
make_keychain() {
  keychain=$scratch/facts.keychain
  security create-keychain -p facts $keychain && security unlock-keychain -p facts $keychain &&
    security add-generic-password -a pat -s facts -l facts -w nothing $keychain
}
remove_keychain() { security delete-keychain $keychain }
make_locked() { security lock-keychain $keychain }

# A launch agent whose job sleeps.
make_agent() {
  agent=$scratch/$identifier.plist
  plutil -create xml1 $agent 2>/dev/null || print -r -- '<plist version="1.0"><dict/></plist>' >$agent
  plutil -insert Label -string $identifier $agent && plutil -insert RunAtLoad -bool true $agent &&
    plutil -insert ProgramArguments -json '["/bin/sleep", "600"]' $agent
}
make_loaded() {
  launchctl load $agent && process=$(launchctl list $identifier | awk '/"PID"/ {print $3 + 0}') && [[ -n $process ]]
}
remove_loaded() { launchctl bootout gui/$UID/$identifier }

# An application that sleeps, known to the system.
make_application() {
  application=$scratch/Facts.app
  mkdir -p $application/Contents/MacOS
  print -r -- '#!/bin/sh
exec /bin/sleep 600' >$application/Contents/MacOS/Facts
  chmod +x $application/Contents/MacOS/Facts
  print -r -- "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>$identifier</string>
    <key>CFBundlePackageType</key><string>APPL</string><key>CFBundleExecutable</key><string>Facts</string>
    <key>LSBackgroundOnly</key><true/></dict></plist>" >$application/Contents/Info.plist
  $register -f $application && mdimport $application
}
remove_application() { $register -u $application }
make_started() {
  open -g -n $application && sleep 2 && process=$(pgrep -f -n $application) && [[ -n $process ]]
}
remove_started() { kill -KILL $process }

# A preference domain with three tiles of the Dock's form; the second has no URL, the third is Wendle's.
make_tiles() {
  print -r -- "<plist version=\"1.0\">$(<$folder/tiles.xml)</plist>" >$scratch/tiles.plist
  defaults import $identifier $scratch/tiles.plist
}
remove_tiles() { defaults delete $identifier }

# A disk image mounted in a folder of the item "$scratch/item".
make_volume() {
  mkdir -p $scratch/item/volume
  hdiutil create -quiet -size 2m -fs HFS+ -volname Facts $scratch/facts.dmg &&
    hdiutil attach -quiet -nobrowse -mountpoint $scratch/item/volume $scratch/facts.dmg &&
    : >$scratch/item/volume/file
}
remove_volume() { hdiutil detach -quiet -force $scratch/item/volume }

make_immutable() { : >$scratch/immutable && chflags uchg $scratch/immutable }
remove_immutable() { chflags nouchg $scratch/immutable }

make_denied() { mkdir $scratch/denied && : >$scratch/denied/file && chmod 500 $scratch/denied }
remove_denied() { chmod 700 $scratch/denied }

has_ended() { ! kill -0 $1 2>/dev/null }

# What the file manager says of a removal: domain and code, and those of the error below it.
remove_item() {
  osascript -l JavaScript - $1 <<'SCRIPT'
ObjC.import('Foundation')
function run(words) {
  const error = Ref()
  const removed = $.NSFileManager.defaultManager.removeItemAtURLError($.NSURL.fileURLWithPath(words[0]), error)
  if (removed) return 'removed'
  const below = error[0].userInfo.objectForKey('NSUnderlyingError')
  return `${error[0].domain.js} ${error[0].code}` + (below.isNil() ? '' : `, ${below.domain.js} ${below.code}`)
}
SCRIPT
}

# How many running applications the registry knows by an identifier.
count_running() {
  osascript -l JavaScript -e "ObjC.import('AppKit')
    $.NSRunningApplication.runningApplicationsWithBundleIdentifier('$1').count"
}
