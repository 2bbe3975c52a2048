define Build/Configure
	cmake -G Ninja -S $(PKG_BUILD_DIR) -B $(PKG_BUILD_DIR)/build -DCMAKE_TOOLCHAIN_FILE=$(TOOLCHAIN_FILE) \
		-DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX=/usr $(CMAKE_OPTIONS)
	cmake --build $(PKG_BUILD_DIR)/build
endef

define Build/Install
	DESTDIR=$(PKG_INSTALL_DIR) cmake --install $(PKG_BUILD_DIR)/build
endef
