#!/bin/sh
# The API reference builds, and every public member has its doc comment.
set -eu
cd "$(dirname "$0")/../.."
exec scripts/docs
