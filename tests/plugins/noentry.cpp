// A plug-in that loads but exports none of the entries the library looks for.
extern "C" int SomethingElse() { return 42; }
