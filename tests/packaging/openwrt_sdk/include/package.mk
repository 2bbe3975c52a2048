PKG_BUILD_DIR := $(BUILD_DIR)/$(PKG_NAME)-$(PKG_VERSION)
PKG_INSTALL_DIR := $(PKG_BUILD_DIR)/ipkg-install

define BuildPackage
all:
	$$(call Build/Prepare)
	$$(call Build/Configure)
	$$(call Build/Install)
	$$(call Build/InstallDev,$$(BUILD_DIR)/staging)
	$$(call Package/$(1)/install,$$(BUILD_DIR)/root)
endef
