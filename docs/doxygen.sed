# Marks the comments of the public headers as documentation for Doxygen: the first one as that of the file,
# one after a declaration as that of the declaration, and the others as those of what follows. Headings are
# not changed.
1 s|^/\* SPDX.*||
2 s|^/\*$|/** \\file|
s|^( *)/\* ----|&|
t
s|([;,]) +/\* |\1 /**< |
t
s|^(#define .*[^ ]) +/\* |\1 /**< |
t
s|^( *)/\*( .*)?$|\1/**\2|
# Parameters and results.
s|^ \* ([a-z_]+): | * \\param \1 |
s|Result:|\\return|
# Lists of names.
s|^ \*   ([A-Z_]+)  +| * - \\c \1: |
