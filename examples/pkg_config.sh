c++ recognise.cpp $(pkg-config --cflags --libs typescout) -o recognise
