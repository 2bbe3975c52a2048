# What the package's makefile uses of an OpenWrt SDK, as far as it takes to run the package's steps.
INCLUDE_DIR := $(TOPDIR)/include
CP := cp -fpR
INSTALL_DIR := install -d -m0755
INSTALL_BIN := install -m0755
