# What a Debian package arranges otherwise than an installation elsewhere: run by cpack on the installed files.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
set(documentation ${root}/usr/share/doc/velmora)

# Configuration lies in /etc; dpkg keeps what an administrator changed there.
file(RENAME ${root}/usr/etc ${root}/etc)
file(GLOB_RECURSE configuration RELATIVE ${root} ${root}/etc/*)
list(TRANSFORM configuration PREPEND /)
list(JOIN configuration "\n" conffiles)
file(WRITE ${CPACK_VELMORA_CONFFILES} "${conffiles}\n")

file(MAKE_DIRECTORY ${root}/usr/share/lintian/overrides)
file(COPY_FILE ${CPACK_VELMORA_OVERRIDES} ${root}/usr/share/lintian/overrides/velmora)
file(COPY_FILE ${CPACK_VELMORA_CHANGELOG} ${documentation}/changelog)
file(GLOB man_pages ${root}/usr/share/man/man1/*.1)
execute_process(COMMAND gzip -9n ${man_pages} ${documentation}/changelog COMMAND_ERROR_IS_FATAL ANY)
