#include "BrowserCore/SelfUpdate/UpdateSwap.h"

namespace orvel::UpdateSwap {

std::string_view script() {
  return R"(trap '' HUP INT TERM
pid=$1
app=$2
staged=$3
relaunch=$4

# One that has ended stays a zombie until its parent asks for it.
runs() {
  kill -0 "$pid" 2>/dev/null || return 1
  while read -r field value rest; do
    if [ "$field" = State: ]; then
      [ "$value" != Z ]
      return
    fi
  done 2>/dev/null <"/proc/$pid/status"
  return 0
}

waited=0
while runs; do
  waited=$((waited + 1))
  if [ "$waited" -gt 1200 ]; then exit 1; fi
  sleep 0.05
done

incoming=$app.incoming.$$
outgoing=$app.outgoing.$$

# An outgoing bundle is always whole; an incoming one is of no use but to the run that made it.
discard() {
  mv -fT -- "$app.outgoing.$1" "$app.incoming.$1"
  rm -rf -- "$app.incoming.$1"
}

# What runs that were killed have left.
for left in "$app".incoming.* "$app".outgoing.*; do
  number=${left##*.}
  case $number in '' | *[!0-9]*) continue ;; esac
  if [ "$number" != $$ ] && grep -q orvel-update "/proc/$number/cmdline"; then continue; fi
  if [ "$left" = "$app.incoming.$number" ]; then
    rm -rf -- "$left"
  elif [ -e "$app" ]; then
    discard "$number"
  else
    mv -fT -- "$left" "$app"
  fi
done 2>/dev/null

# Two of these may run at once: with -T nothing is moved into a bundle that stands there by now.
if mv -fT -- "$staged" "$incoming" && mv -fT -- "$app" "$outgoing"; then
  if mv -fT -- "$incoming" "$app" || ! mv -fT -- "$outgoing" "$app" && [ -e "$app" ]; then
    discard $$
  fi
fi
rm -rf -- "$incoming"

if [ "$relaunch" = 1 ]; then
  trap - HUP INT TERM
  unset GIO_LAUNCHED_DESKTOP_FILE GIO_LAUNCHED_DESKTOP_FILE_PID INVOCATION_ID JOURNAL_STREAM
  unset DESKTOP_STARTUP_ID XDG_ACTIVATION_TOKEN
  set -- "$app/Contents/Linux/orvel"
  # The shell itself cannot take back what was ignored before it began.
  defaults=--default-signal=HUP,INT,TERM
  if env "$defaults" true 2>/dev/null; then set -- env "$defaults" "$@"; fi
  # With the service that started the old version its processes end; in a scope the new one stays.
  own=
  read -r own 2>/dev/null </proc/self/cgroup
  case $own in
    *.service)
      if systemd-run --user --scope --quiet true 2>/dev/null; then
        set -- systemd-run --user --scope --quiet "$@"
      fi
      ;;
  esac
  exec setsid "$@"
fi
)";
}

}  // namespace orvel::UpdateSwap
