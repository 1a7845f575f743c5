#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# cached.sh COMPILER ARGUMENT...: compiles by way of ccache.
#
# It does not keep what was compiled with precompiled headers unless it may overlook what they say of time and definitions.
# A precompiled header is made anew without the former one: its preprocessing would take that for what the headers say now, and
# find what it kept for others.
for argument in "$@"; do
    case $argument in *.gch) rm -f -- "$argument" ;; esac
done
CCACHE_SLOPPINESS=pch_defines,time_macros exec ccache "$@"
