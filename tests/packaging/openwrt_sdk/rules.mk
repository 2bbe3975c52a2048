# The part of an OpenWrt SDK that the package's makefile needs to run its steps.
INCLUDE_DIR := $(TOPDIR)/include
CP := cp -fpR
INSTALL_DIR := install -d -m0755
INSTALL_BIN := install -m0755
INSTALL_CONF := install -m0600
