"""Roots of a Debian release in which packages are tried: a minimal one that is kept, one with a session's tools above it,
and fresh ones above either, which are gone after use.

Everything is mounted in a namespace of the calling process, which nobody else sees and which ends with it."""

import os
import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# Counted up when the kept roots have to be made anew because they are made otherwise.
RECIPE = "1"
CLEAN = "QUILLMERE_IN_A_NAMESPACE"

# What a desktop session that is looked at from outside needs beside the package: nothing that the program itself could
# miss, which is why it is tried without these first.
TOOLS = ["at-spi2-core", "gir1.2-gtk-3.0", "hicolor-icon-theme", "libglib2.0-bin", "openbox", "pipewire-bin", "pipewire-pulse",
         "procps", "python3", "python3-pyatspi", "sudo", "wireplumber", "x11-utils", "xdotool", "xvfb"]
USER = "listener"


class NotHere(Exception):
    """Why packages can't be tried on this machine."""


def enter_namespace():
    """Runs this program again in namespaces of its own, in which it is the parent of all: they end with it."""
    if os.environ.get(CLEAN):
        return
    if os.getuid() != 0:
        raise NotHere("only root may change the root folder; try sudo")
    for tool in ("unshare", "chroot", "debootstrap", "apt-get", "setpriv"):
        if shutil.which(tool) is None:
            raise NotHere(f"there is no '{tool}'")
    # In a root of its own, "/" is no mount whose kind could be changed; what is private there stays so.
    for kind in ("private", "unchanged"):
        command = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", kind]
        done = subprocess.run([*command, "true"], stderr=subprocess.PIPE, text=True, check=False)
        if done.returncode == 0:
            if kind == "unchanged" and " shared:" in Path("/proc/self/mountinfo").read_text(encoding="utf-8"):
                break
            os.environ[CLEAN] = "1"
            os.execvp(command[0], [*command, "--", sys.executable, *sys.argv])
    raise NotHere(f"this machine lends no namespaces (a container needs CAP_SYS_ADMIN): {done.stderr.strip()}")


def codename():
    lines = Path("/etc/os-release").read_text(encoding="utf-8").splitlines()
    facts = dict(line.split("=", 1) for line in lines if "=" in line)
    return facts.get("VERSION_CODENAME", "sid")


def mount(*words):
    done = subprocess.run(["mount", *map(str, words)], stderr=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        raise NotHere(f"this machine lends no mounts: {done.stderr.strip()}")


class CleanRoot:
    """A root of this machine's release above kept ones, of which nothing changes. Only within enter_namespace()."""

    def __init__(self, place, layers, name, keep=None):
        """`layers` are folders, the uppermost first. What changes is forgotten, or goes to the folder `keep`."""
        self.place = place
        work = place / f"{name}.work"
        if keep is None:
            scratch = place / name
            shutil.rmtree(scratch, ignore_errors=True)
            keep = scratch / "changed"
            work = scratch / "work"
        shutil.rmtree(work, ignore_errors=True)
        self.root = place / f"{name}.root"
        for folder in (keep, work, self.root):
            folder.mkdir(parents=True, exist_ok=True)
        self.work = work
        self.changed = keep
        mount("-t", "overlay", "overlay", "-o",
              f"lowerdir={':'.join(map(str, layers))},upperdir={keep},workdir={work}", self.root)
        mount("-t", "proc", "proc", self.root / "proc")
        for lent in ("sys", "dev"):
            mount("--rbind", f"/{lent}", self.root / lent)
        for passing in ("tmp", "run"):
            mount("-t", "tmpfs", "-o", "mode=1777" if passing == "tmp" else "mode=755", "tmpfs", self.root / passing)
        # Packages that were fetched once are there for all.
        archives = place / "archives"
        (archives / "partial").mkdir(parents=True, exist_ok=True)
        mount("--bind", archives, self.root / "var/cache/apt/archives")
        for file in ("resolv.conf", "hosts"):
            if Path("/etc", file).exists():
                shutil.copy(Path("/etc", file), self.root / "etc" / file)

    def bind(self, source, target):
        """Shows a folder of this machine in the root, below /run, for reading."""
        inside = self.root / target.lstrip("/")
        inside.mkdir(parents=True, exist_ok=True)
        mount("--bind", source, inside)
        mount("-o", "remount,bind,ro", inside)

    def command(self, *words, user=None):
        as_user = ["setpriv", "--reuid", user, "--regid", user, "--init-groups"] if user else []
        home = "/root" if user is None else f"/home/{user}"
        return ["chroot", str(self.root), "/usr/bin/env", "-i", f"HOME={home}", "LANG=C.UTF-8", "DEBIAN_FRONTEND=noninteractive",
                "PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
                *(f"{name}={value}" for name, value in os.environ.items() if name.endswith("_proxy")), *as_user,
                *map(str, words)]

    def run(self, *words, user=None, check=True, seconds=1200):
        """What the command says, both ways."""
        done = subprocess.run(self.command(*words, user=user), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, errors="replace", check=False, timeout=seconds)
        if check and done.returncode != 0:
            raise AssertionError(f"{' '.join(map(str, words))}: code {done.returncode}\n{done.stdout[-4000:]}")
        return done.stdout

    def install(self, *words):
        """By apt, with nothing that is only recommended. Lists of packages may have become too old."""
        command = ("apt-get", "-o", "APT::Keep-Downloaded-Packages=true", "-q", "-y", "--no-install-recommends", *words)
        try:
            return self.run(*command)
        except AssertionError:
            self.run("apt-get", "-q", "update")
            return self.run(*command)

    def files(self):
        """Everything that lies there, by its path: kind and mode, and for links and the system's settings the contents."""
        found = {}
        passing = {self.root / name for name in ("proc", "sys", "dev", "tmp", "run", "var/cache/apt/archives")}
        for folder, folders, names in os.walk(self.root):
            here = Path(folder)
            folders[:] = [name for name in folders if here / name not in passing]
            for name in folders + names:
                path = here / name
                facts = path.lstat()
                seen = [oct(facts.st_mode), facts.st_uid, facts.st_gid]
                if path.is_symlink():
                    seen.append(os.readlink(path))
                elif path.is_file():
                    seen.append(facts.st_size)
                    if self.root / "etc" in path.parents:
                        seen.append(path.read_bytes())
                found["/" + str(path.relative_to(self.root))] = seen
        return found

    def leave(self):
        """Unmounts what was mounted; the namespace would do so at its end."""
        subprocess.run(["umount", "--recursive", str(self.root)], check=False)
        shutil.rmtree(self.work, ignore_errors=True)


def kept_roots(place, depends):
    """The layers of a minimal root and of one with a session's tools, both with what `depends` asks for: each is made once,
    and again when it should hold something else."""
    place.mkdir(parents=True, exist_ok=True)
    base = place / "base"

    def made(folder, recipe):
        mark = place / f"{folder.name}.recipe"
        if folder.is_dir() and mark.exists() and mark.read_text(encoding="utf-8") == recipe:
            return True
        mark.unlink(missing_ok=True)
        shutil.rmtree(folder, ignore_errors=True)
        return False

    def is_made(folder, recipe):
        (place / f"{folder.name}.recipe").write_text(recipe, encoding="utf-8")

    def layer(name, below, recipe, add):
        folder = place / name
        if not made(folder, recipe):
            print(f"== adding {name} to the root of {codename()}", flush=True)
            root = CleanRoot(place, below, "making", keep=folder)
            try:
                add(root)
            finally:
                root.leave()
            is_made(folder, recipe)
        return [folder, *below]

    def add_user(root):
        root.run("apt-get", "-q", "update")
        root.run("useradd", "--create-home", "--shell", "/bin/bash", USER)

    def add_tools(root):
        root.install("install", *TOOLS)
        (root.root / "etc/sudoers.d/listener").write_text(f"{USER} ALL=(ALL) NOPASSWD: ALL\n", encoding="utf-8")
        (root.root / "etc/sudoers.d/listener").chmod(0o440)

    recipe = f"{RECIPE} {codename()}"
    if not made(base, recipe):
        done = subprocess.run(["sh", str(ROOT / "scripts/make-root"), codename(), str(base)], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, text=True, check=False)
        print(done.stdout, end="", flush=True)
        if done.returncode != 0:
            raise NotHere((done.stdout.splitlines() or ["no root can be made"])[-1])
        is_made(base, recipe)
    bare = layer("user", [base], recipe, add_user)
    session = layer("tools", bare, f"{recipe} {' '.join(TOOLS)}", add_tools)
    return (layer("depends", bare, f"{recipe} {depends}", lambda root: root.install("satisfy", depends)),
            layer("tools-depends", session, f"{recipe} {' '.join(TOOLS)} {depends}",
                  lambda root: root.install("satisfy", depends)))
