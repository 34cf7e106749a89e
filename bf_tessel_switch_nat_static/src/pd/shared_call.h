// How exported functions that differ in one constant share their code: they hand their arguments on where
// they are, put the constant beside them and end in a jump.
#pragma once

// The constant stands where no argument has to move for it: behind those in registers; before those on the
// stack, in a register itself. Both are written around the parameters, or arguments, of a function that is
// TS_SHARED.
#ifdef __i386__
#define TS_BESIDE(constant, ...) (constant, __VA_ARGS__)
#define TS_SHARED gnu::noinline, gnu::regparm(1)
#else
#define TS_BESIDE(constant, ...) (__VA_ARGS__, constant)
#define TS_SHARED gnu::noinline
#endif
