#!/usr/bin/env bash
# Tries the Debian package on a bare Debian 12: debootstrap makes one in a scratch folder, apt installs the package there
# with nothing but what it depends on, and it has to work, for an ordinary user with a new home and without a display.
# Then come the window on a screen in memory, hosts in C and C++, Python, an upgrade, and a removal that leaves nothing but
# what is the user's. Takes root, network, 2 GB in /var/tmp and some five minutes, besides the time to build the package.
#
#   scripts/package-root-test.sh [--keep] [PACKAGE.deb]
#
# Without a package it is made first. ZEL_MIRROR names another Debian mirror.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"
. "$root/scripts/clean-root.sh"

test_name=package-root
keep=no
package=
for argument in "$@"; do
  case $argument in
    --keep) keep=yes ;;
    *.deb) package=$argument ;;
    *)
      sed -n '2,10s/^# \{0,1\}//p' "$0"
      [ "$argument" = --help ] && exit 0 || exit 2
      ;;
  esac
done
require_clean_root
[ -n "$package" ] || package=$("$root/scripts/package.sh")
version=$(dpkg-deb -f "$package" Version)
make_clean_root

# user_stage NAME PATTERN: runs the commands on standard input as an ordinary user; their output has to hold the pattern.
user_stage() {
  local script=/srv/$1.sh
  cat >"$system$script"
  clean_root_stage "$1" \
    "runuser -u planner -- /usr/bin/env -i HOME=/home/planner PATH=/usr/bin:/bin /bin/sh -e -c 'cd && . $script'" "$2"
}

# root_stage NAME PATTERN: the same as root.
root_stage() {
  local script=/srv/$1.sh
  cat >"$system$script"
  clean_root_stage "$1" "/bin/sh -e $script" "$2"
}

apt="apt-get -q -y -o Acquire::Retries=3 --no-install-recommends install"

# ---- The package alone ----

cp "$package" "$system/srv/terrain-profiler.deb"
root_stage install '^Setting up terrain-profiler' <<EOT
export DEBIAN_FRONTEND=noninteractive
apt-get -q update
$apt /srv/terrain-profiler.deb
useradd --create-home planner
EOT

user_stage version "^terrain-profiler ${version//./\\.}\$" <<'EOT'
terrain-profiler --version
EOT

user_stage loss '^Modeled loss +[0-9.]+ dB' <<'EOT'
terrain-profiler loss --from 36.40,-84.35,30 --to 36.22,-84.12,30
terrain-profiler terrain list
EOT

# What is drawn has texts, so its picture is larger than one without a font.
user_stage pictures '^done$' <<'EOT'
terrain-profiler picture --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o path.png
head -c 8 path.png | grep -q PNG
terrain-profiler print --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o path.pdf
grep -qa 'DejaVu\|Liberation' path.pdf
terrain-profiler export height --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o heights.csv
echo done
EOT

# Without gnuplot there is no picture of a graph, but all that it is made from.
user_stage graph '^Note +no picture is drawn' <<'EOT'
terrain-profiler export signal-graph --from 36.40,-84.35,30 --to 36.22,-84.12,30 -o graph.png
test -s graph.dat && test -s graph.plt && test -s graph_PTP.txt && test ! -e graph.png
EOT

user_stage links '^north,' <<'EOT'
printf 'name,lat1,lon1,h1,lat2,lon2,h2\nnorth,36.40,-84.35,30,36.22,-84.12,30\n' >links.csv
terrain-profiler links links.csv -o losses.csv
cat losses.csv
EOT

user_stage report '^%PDF' <<'EOT'
cat >plan.json <<'PLAN'
{"format": "terrain-profiler plan", "version": 1, "stations": [
 {"id": 1, "name": "A", "latitude": 36.4, "longitude": -84.35}, {"id": 2, "name": "B", "latitude": 36.22, "longitude": -84.12}],
 "links": [{"from": 1, "to": 2}]}
PLAN
terrain-profiler report plan.json -o plan.pdf
head -c 4 plan.pdf
EOT

user_stage settings '^450$' <<'EOT'
terrain-profiler settings set Profile/Prf_Freq 450
terrain-profiler settings get Profile/Prf_Freq
EOT

# ---- Beside other packages ----

root_stage others '^Setting up' <<EOT
export DEBIAN_FRONTEND=noninteractive
$apt python3 man-db desktop-file-utils appstream shared-mime-info libglib2.0-bin \
  xvfb x11-utils gcc g++ libc6-dev pkg-config cmake make bash-completion
EOT

user_stage python '^Python says [0-9.]+ dB' <<'EOT'
python3 - <<'PYTHON'
import zelprofiler01
print("Python says %.1f dB" % zelprofiler01.get_path_loss(36.40, -84.35, 30, 36.22, -84.12, 30))
PYTHON
EOT

user_stage desktop '^application/vnd.terrain-profiler.plan\+json$' <<'EOT'
man -w terrain-profiler vexptp.exe
desktop-file-validate /usr/share/applications/terrain-profiler.desktop
appstreamcli validate --no-net /usr/share/metainfo/*terrain-profiler*.xml
bash -c '. /usr/share/bash-completion/bash_completion; _completion_loader terrain-profiler || true
  complete -p terrain-profiler' | grep _terrain_profiler
echo '{"format": "of another program"}' >other.json
kind() { gio info -a standard::content-type "$1" | sed -n 's/^ *standard::content-type: //p'; }
test "$(kind other.json)" = application/json
gio mime application/vnd.terrain-profiler.plan+json | grep -q terrain-profiler.desktop
kind plan.json
EOT

# The window has the class that its menu entry tells.
user_stage window 'plan.json.*Terrain Profiler' <<'EOT'
Xvfb :97 -screen 0 1280x1024x24 -nolisten tcp >xvfb.log 2>&1 &
screen=$!
export DISPLAY=:97
class=$(sed -n 's/^StartupWMClass=//p' /usr/share/applications/terrain-profiler.desktop)
program=
seen=no
for i in $(seq 300); do
  if [ -z "$program" ] && xwininfo -root >/dev/null 2>&1; then
    terrain-profiler plan.json >program.log 2>&1 &
    program=$!
  fi
  if xwininfo -root -tree 2>/dev/null | grep "plan.json.*(\"[^\"]*\" \"$class\")"; then seen=yes; break; fi
  sleep 0.2
done
xwininfo -root -tree
cat program.log xvfb.log
kill ${program:+"$program"} || true
kill "$screen"
wait
test $seen = yes
EOT

mkdir -p "$system/srv/consumers"
cp -r "$root/tests/consumers/c" "$root/tests/consumers/cpp" "$system/srv/consumers/"
user_stage host-in-c '^consumer: loss [0-9.]+ dB' <<'EOT'
cc -std=c11 /srv/consumers/c/main.c $(pkg-config --cflags --libs zelProfiler01) -o host
./host "$HOME"
EOT
for language in c cpp; do
  user_stage "cmake-$language" '^consumer: loss [0-9.]+ dB' <<EOT
cmake -S /srv/consumers/$language -B build-$language
cmake --build build-$language
build-$language/consumer_$language "\$HOME"
EOT
done

# ---- Upgrade and removal ----

root_stage intact '^intact$' <<'EOT'
test -z "$(dpkg -V terrain-profiler)"
echo intact
EOT

root_stage again '^Setting up terrain-profiler' <<EOT
export DEBIAN_FRONTEND=noninteractive
$apt --reinstall /srv/terrain-profiler.deb
EOT

root_stage upgrade "^Setting up terrain-profiler \\($version\\+next\\)" <<EOT
export DEBIAN_FRONTEND=noninteractive
dpkg-deb -R /srv/terrain-profiler.deb /srv/next
sed -i 's/^Version: .*/Version: $version+next/' /srv/next/DEBIAN/control
dpkg-deb -Zgzip -z1 --root-owner-group -b /srv/next /srv/next.deb
$apt /srv/next.deb
test -z "\$(dpkg -V terrain-profiler)"
rm -r /srv/next /srv/next.deb
EOT

user_stage upgraded '^450$' <<'EOT'
terrain-profiler loss --from 36.40,-84.35,30 --to 36.22,-84.12,30
terrain-profiler settings get Profile/Prf_Freq
EOT

# Python as root leaves what it compiled beside the package.
root_stage purge '^nothing left$' <<'EOT'
export DEBIAN_FRONTEND=noninteractive
python3 -c 'import zelprofiler01'
dpkg -L terrain-profiler >/srv/files
apt-get -q -y purge terrain-profiler
while read -r file; do if [ ! -d "$file" ] && [ -e "$file" ]; then echo "left: $file"; fi; done </srv/files >/srv/left
find / -xdev \( -path /proc -o -path /srv -o -path /home \) -prune -o \
  \( -iname '*terrain-profiler*' -o -iname '*zelprofiler*' -o -name 'vexptp*' \) -print >>/srv/left
cat /srv/left
test ! -s /srv/left
ls /home/planner/.config/zelprofiler
test -s "/home/planner/.config/zelprofiler/Terrain Profiler.ini"
echo 'nothing left'
EOT
echo "package-root: $(basename "$package") installs, works and goes" >&2
