################################################################################
#
# libcaltofal: the library for the firmware image, built from this
# repository with CMake (the SDK provides libcal and libhelper).
#
################################################################################

LIBCALTOFAL_VERSION = main
LIBCALTOFAL_SITE = $(call qstrip,$(BR2_PACKAGE_LIBCALTOFAL_SITE))
LIBCALTOFAL_SITE_METHOD = git
LIBCALTOFAL_INSTALL_STAGING = YES
LIBCALTOFAL_SUPPORTS_IN_SOURCE_BUILD = NO

LIBCALTOFAL_CONF_OPTS = \
	-DCMAKE_BUILD_TYPE=Release \
	-DCALTOFAL_TESTS=OFF \
	-DCALTOFAL_BENCH=OFF

define LIBCALTOFAL_INSTALL_TARGET_CMDS
	DESTDIR=$(TARGET_DIR) $(BR2_CMAKE) --install $(LIBCALTOFAL_BUILDDIR) \
		--prefix /usr --component library
endef

define LIBCALTOFAL_INSTALL_STAGING_CMDS
	DESTDIR=$(STAGING_DIR) $(BR2_CMAKE) --install $(LIBCALTOFAL_BUILDDIR) \
		--prefix /usr --component library
endef

$(eval $(cmake-package))
