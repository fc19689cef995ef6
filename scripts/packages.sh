# The Debian packages that the scripts install, grouped by purpose. Source this file; do not run it.
# shellcheck shell=bash disable=SC2034
packages_build=(g++ cmake ninja-build qt6-base-dev libasio-dev libgtest-dev libasound2-dev)
packages_run=(fonts-dejavu-core libgl1 libasound2)
packages_display=(xvfb xauth openbox xdotool wmctrl x11-utils imagemagick)
packages_check=(clang-format git)
packages_fuzz=(clang libclang-rt-14-dev)
