# shellcheck shell=bash
#
# Clean Debian systems in folders. Source it after common.sh; the functions need root.

# Where apt finds the packages of Debian on this machine, without others.
sources_of_debian() {
    # shellcheck disable=SC2016 # is expanded by apt-get
    apt-get indextargets 'Identifier: Packages' 'Origin: Debian' --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' \
        | sort --unique
}

# make_root ROOT: the least that a Debian of this machine's release consists of. Nothing but the place of its packages, and
# how that is reached, is taken from this machine.
make_root() {
    local root=$1 release
    release=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
    rm -rf "$root"
    mkdir -p "$(dirname "$root")"
    [[ -n $(sources_of_debian) ]] || quietly "$root.log" apt-get update
    sources_of_debian >"$root.list"
    apt-config dump | grep -E '^Acquire::(http|https|Check-[A-Za-z-]+)[: ]' >"$root.apt.conf" || true
    # The lists of packages are kept, so that others can be installed.
    quietly "$root.log" mmdebstrap --mode=root --variant=minbase --aptopt="$root.apt.conf" --skip=cleanup/apt/lists \
        "$release" "$root" "$root.list"
}

# in_root ROOT COMMAND...: runs it there as root, with the processes, the terminals, the name of the machine (host_name) and
# the mounted folders apart from those of this system.
host_name=clean
in_root() {
    local root=$1
    shift
    # shellcheck disable=SC2016 # is expanded by the shell within
    unshare --mount --uts --pid --fork --kill-child sh -e -c \
        'hostname "$1"; shift; mount -t proc proc "$0/proc"; mount -t tmpfs shm "$0/dev/shm"
        mount -t devpts -o newinstance,ptmxmode=0666 terminals "$0/dev/pts"; exec chroot "$0" "$@"' \
        "$root" "$host_name" "$@"
}

users=/srv # where the folders of the users are, within a root

# add_user ROOT USER: with a folder of its own
add_user() {
    in_root "$1" useradd --create-home --home-dir "$users/$2" "$2"
}

# as_user ROOT USER VARIABLE=VALUE... COMMAND...: runs it there as that user, with these variables and the least of others.
as_user() {
    local root=$1 user=$2
    shift 2
    in_root "$root" env --ignore-environment --chdir="$users/$user" \
        PATH=/usr/bin:/bin HOME="$users/$user" USER="$user" LC_ALL=C.UTF-8 \
        setpriv --reuid "$user" --regid "$user" --clear-groups --inh-caps=-all env "$@"
}

# install_in ROOT COMMAND OPTION...: apt-get there, without packages that are only recommended.
install_in() {
    local root=$1
    shift
    in_root "$root" env DEBIAN_FRONTEND=noninteractive apt-get --yes --no-install-recommends \
        --option Dpkg::Use-Pty=0 "$@"
}
