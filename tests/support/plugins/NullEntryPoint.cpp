// An entry point whose address is null: the loader finds it and has nothing to complain of.
__asm__(".globl AutoCli_RegisterNamespaces\n.set AutoCli_RegisterNamespaces, 0");
