// An entry point that is data, in a place that may be executed.
__asm__(
    ".text\n"
    ".globl AutoCli_RegisterNamespaces\n"
    ".type AutoCli_RegisterNamespaces, @object\n"
    ".size AutoCli_RegisterNamespaces, 8\n"
    "AutoCli_RegisterNamespaces: .quad 0\n"
    ".section .note.GNU-stack,\"\",@progbits\n");
