PKG_BUILD_DIR := $(BUILD_DIR)/$(PKG_NAME)-$(PKG_VERSION)
PKG_INSTALL_DIR := $(PKG_BUILD_DIR)/ipkg-install

# Of the packages only the plug-in is selected.
define BuildPackage
ifeq ($(1),$$(PKG_NAME))
all:
	$$(call Build/Prepare)
	$$(call Build/Configure)
	$$(call Build/Install)
	$$(call Build/InstallDev,$$(BUILD_DIR)/staging)
	$$(call Package/$(1)/install,$$(BUILD_DIR)/root)
endif
endef
