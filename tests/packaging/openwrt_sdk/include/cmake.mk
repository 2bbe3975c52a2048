# Flags and options as an SDK for a MIPS router passes them; the package's come last.
TARGET_CFLAGS := -Os -pipe -mno-branch-likely -mips32r2 -mtune=24kc -fno-caller-saves -fno-plt \
	-Wformat -Werror=format-security -fstack-protector -D_FORTIFY_SOURCE=1
TARGET_LDFLAGS := -Wl,-z,now -Wl,-z,relro

define Build/Configure
	CFLAGS="$(TARGET_CFLAGS)" CXXFLAGS="$(TARGET_CFLAGS)" LDFLAGS="$(TARGET_LDFLAGS)" \
	cmake -G Ninja -S $(PKG_BUILD_DIR) -B $(PKG_BUILD_DIR)/build -DCMAKE_TOOLCHAIN_FILE=$(TOOLCHAIN_FILE) \
		-DCMAKE_BUILD_TYPE=Release -DCMAKE_C_FLAGS_RELEASE=-DNDEBUG -DCMAKE_CXX_FLAGS_RELEASE=-DNDEBUG \
		-DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_RPATH=TRUE $(CMAKE_OPTIONS)
	cmake --build $(PKG_BUILD_DIR)/build
endef

# With this machine's compiler and libraries.
define Build/ConfigureHere
	cmake -G Ninja -S $(PKG_BUILD_DIR) -B $(PKG_BUILD_DIR)/build -DCMAKE_INSTALL_PREFIX=/usr $(CMAKE_OPTIONS)
endef

define Build/Install
	DESTDIR=$(PKG_INSTALL_DIR) cmake --install $(PKG_BUILD_DIR)/build
endef
