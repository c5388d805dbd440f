# What Debian wants beyond `cmake --install`; cpack runs this on the tree that it is about to pack.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
set(changes ${share}/doc/standby/changelog.Debian)
string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${changes} "standby (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium

  * What changed stands in CHANGELOG.md.

 -- ${CPACK_PACKAGE_CONTACT}  ${now}
")
file(GLOB pages ${share}/man/man1/*.1)
execute_process(COMMAND gzip -9n ${pages} ${changes} COMMAND_ERROR_IS_FATAL ANY)
