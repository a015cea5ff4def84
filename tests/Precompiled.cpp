// Nothing of its own: stands for the programs whose precompiled header this target makes.
