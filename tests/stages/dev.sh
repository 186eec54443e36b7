# dev: build with g++, run every test
build_and_test dev
