# Sourced after common.sh by what needs servers: gets MapServer, lighttpd and nginx without installing them, since
# their packages would start services on this machine.

server_packages="cgi-mapserver lighttpd nginx"
qgis_packages="qgis-server qgis libqgis-dev python3-qgis python3-gdal xvfb"
servers=$root/build/servers

# new_parts [option of apt...]: what would be installed for the servers and is not yet, as name=version.
new_parts() {
  # shellcheck disable=SC2086  # a list of words on purpose
  apt-get "$@" -s -q install --no-install-recommends $server_packages |
    sed -nE 's/^Inst ([^ ]+) (\[[^]]*\] )?\(([^ ]+) .*/\1=\3/p'
}

# fetch_parts <folder> [option of apt...]
fetch_parts() {
  local folder=$1 parts
  shift
  parts=$(new_parts "$@") || return 1
  rm -rf "$folder" && mkdir -p "$folder"
  [ -n "$parts" ] || return 0
  # shellcheck disable=SC2086  # a list of words on purpose
  (cd "$folder" && apt-get "$@" -o APT::Sandbox::User=root download $parts)
}

# The package lists of this machine may be missing or too old, and renewing them needs rights; so do it in a folder.
with_own_lists() {
  local own=(-o "Dir::State::Lists=$servers/apt/lists" -o "Dir::Cache=$servers/apt/cache" -o APT::Sandbox::User=root)
  mkdir -p "$servers/apt/lists/partial" "$servers/apt/cache/archives/partial"
  apt-get "${own[@]}" update && fetch_parts "$1" "${own[@]}"
}

unpack_parts() {
  local package
  for package in "$1"/*.deb; do
    [ ! -e "$package" ] || dpkg-deb -x "$package" "$2"
  done
}

# Whether each program finds its libraries, below build/servers or installed. Those change under way.
servers_run() {
  local program file path
  [ "$(cat "$servers/.packages" 2>/dev/null)" = "$server_packages" ] || return 1
  path=$(printf '%s:' "$servers"/root/usr/lib/*-linux-gnu)
  for program in /usr/lib/cgi-bin/mapserv /usr/sbin/lighttpd /usr/sbin/nginx; do
    file=$servers/root$program
    [ -x "$file" ] || file=$program
    ! LD_LIBRARY_PATH=$path ldd "$file" 2>&1 | grep -qE 'not found|No such file' || return 1
  done
}

# Unpacks the servers below build/servers/root, whole or not at all; a second call has nothing to do.
set_up_servers() {
  local log=$servers/set-up.log
  ! servers_run || return 0
  command -v apt-get >/dev/null || fail "these scripts know Debian only; build/servers lacks: $server_packages"
  say "Unpacking servers for the tests: $server_packages"
  mkdir -p "$servers"
  fetch_parts "$servers/packages" >"$log" 2>&1 || with_own_lists "$servers/packages" >>"$log" 2>&1 || {
    cat "$log" >&2
    fail "the servers of the tests could not be downloaded"
  }
  rm -rf "$servers/root"
  mkdir -p "$servers/root"
  unpack_parts "$servers/packages" "$servers/root"
  rm -rf "$servers/packages" "$servers/apt"
  printf '%s\n' "$server_packages" >"$servers/.packages"
  servers_run || fail "the servers of the tests were unpacked, and lack libraries"
}

# QGIS, as a server and as a desktop, is large. Who wants its tests sets VLCLIENTUI_WITH_QGIS=1; else they run where it
# is installed. Who cannot install it hears which packages are missing.
set_up_qgis() {
  [ "${VLCLIENTUI_WITH_QGIS:-}" = 1 ] || return 0
  # shellcheck disable=SC2086  # a list of words on purpose
  install_packages $qgis_packages
}
