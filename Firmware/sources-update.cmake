# Which image in a directory is the board's, and updating from it.
