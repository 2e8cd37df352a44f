#!/bin/sh
# install.sh BUILD PREFIX: makes the machine that the end-to-end tests print on.
set -eu
build=$1
. "$(dirname "$0")/chain.sh"
wine_use "$2"
wine_new
chain_use "$2"
chain_install
