PKG_BUILD_DIR := $(BUILD_DIR)/$(PKG_NAME)-$(PKG_VERSION)
PKG_INSTALL_DIR := $(PKG_BUILD_DIR)/ipkg-install

# Of the packages only the plug-in is built. Those that need C++ are configured, and pack files that are there already.
define BuildPackage
ifeq ($(1),$$(PKG_NAME))
all:
	$$(call Build/Prepare)
	$$(call Build/Configure)
	$$(call Build/Install)
	$$(call Build/InstallDev,$$(BUILD_DIR)/staging)
	$$(call Package/$(1)/install,$$(BUILD_DIR)/root)
else
$(1):
	$$(call Build/Prepare)
	$$(call Build/ConfigureHere)
	$$(call Package/$(1)/install,$$(BUILD_DIR)/root)
depends_of_$(1):
	@echo '$$(strip $$(filter +%,$$(Package/$(1))))'
endif
endef
