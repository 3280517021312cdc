# golden tests of the reference implementation: rakova_test(name source LIBS ...)
