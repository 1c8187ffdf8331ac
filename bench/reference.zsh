#!/bin/zsh
# What people would use instead: the tools of --hard in the same order, and rm -rf. Runs in a simulated Mac, where the
# host's own rm stands in /host: the Mac's is under a recorder.
prefix=com.wendle.DesktopClient
library=$HOME/Library
rm=/host/bin/rm

remove() { $rm -rf -- "$@" }

remove /Applications/Wendle.app

for plist in $library/LaunchAgents/$prefix.Wendle{Updater,Agent,Launcher}.plist \
  $library/QuickLook/WendleQL.qlgenerator $library/LaunchAgents/$prefix.Wendle{Assistant,Extension}.plist; do
  [[ -e $plist ]] || continue
  /bin/launchctl unload -w $plist 2>/dev/null
  /bin/launchctl remove $plist 2>/dev/null
  remove $plist
done

/usr/bin/pluginkit -e ignore -i $prefix.WendleAgent.FinderSyncExt

for component in '' .WendleAgent .WendleLauncher .WendleUpdater .WendleAssistant .WendleUninstaller \
  .WendleAgent.FinderSyncExt .WendleExtension; do
  /usr/bin/tccutil reset All $prefix$component 2>/dev/null
done

# No pkill here: it asks by name what the uninstaller asks by identifier.
for component in .WendleAgent '' .WendleLauncher .WendleAssistant .WendleExtension; do
  for environment in /proc/<1->/environ(N); do
    [[ -r $environment && $'\0'$(<$environment)$'\0' == *$'\0'__CFBundleIdentifier=$prefix$component$'\0'* ]] &&
      kill ${${environment#/proc/}%/environ}
  done
done

position=$(defaults read com.apple.dock persistent-others | grep '_CFURLString"' | awk '/Wendle/ {print NR}')
if [[ -n $position ]]; then
  /usr/libexec/PlistBuddy -c "Delete persistent-others:$((position - 1))" $library/Preferences/com.apple.dock.plist
  killall Dock
fi

for component in Agent Launcher Updater Uninstaller Assistant; do
  for bundle in ${(f)"$(/usr/bin/mdfind "kMDItemCFBundleIdentifier == $prefix.Wendle$component")"}; do
    case $bundle in
      */Volumes*|*/DerivedData/*|*.backupdb/*|*/Clone/*|*.wrp(0|[1-9]|[1-9]<->)/*) ;;
      *) remove $bundle ;;
    esac
  done
done

remove /Applications/Wendle
remove $library/Containers/**/com.wendle.*(/N)

keychain=$library/Keychains/login.keychain
for label in Wendle WendleAgent WendleTeamManagement; do
  while /usr/bin/security find-generic-password -l $label $keychain 2>/dev/null; do
    /usr/bin/security delete-generic-password -l $label $keychain 2>/dev/null || break
  done
done

remove "$library/Application Support/Wendle" /Users/Shared/Wendle /Applications/Wendle.app
for component in '' .WendleLauncher .WendleAgent .WendleUpdater .WendleAssistant .WendleExtension; do
  remove $library/Preferences/$prefix$component.plist
done
