# SPDX-License-Identifier: MIT
# SPDX-FileCopyrightText: 2026 plotvw contributors
#
# Turns the installed files into those of a Debian package; cpack runs this before it packs them.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
set(doc ${share}/doc/plotvw)

function(gzip)
  execute_process(COMMAND gzip --best --no-name ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(GLOB pages ${share}/man/man*/*)
gzip(${pages})

file(MAKE_DIRECTORY ${doc})
file(COPY_FILE ${CPACK_PLOTVW_SOURCE}/packaging/debian/copyright ${doc}/copyright)
file(COPY_FILE ${CPACK_PLOTVW_SOURCE}/packaging/debian/changelog ${doc}/changelog.Debian)
file(COPY_FILE ${CPACK_PLOTVW_SOURCE}/CHANGELOG.md ${doc}/changelog)
gzip(${doc}/changelog.Debian ${doc}/changelog)

# Where Debian's zsh looks.
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)

# The package must not depend on the umask of the build.
set(readable OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
set(executable ${readable} OWNER_EXECUTE GROUP_EXECUTE WORLD_EXECUTE)
file(CHMOD_RECURSE ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr
     FILE_PERMISSIONS ${readable} DIRECTORY_PERMISSIONS ${executable})
file(GLOB programs ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/bin/*)
file(CHMOD ${programs} FILE_PERMISSIONS ${executable})
