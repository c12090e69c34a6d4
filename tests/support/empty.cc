// Keeps the support library non-empty while no fake is compiled.
