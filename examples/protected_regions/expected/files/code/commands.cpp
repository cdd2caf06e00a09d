// Made from commands.txt. What stands between "begin" and "end", and between the functions, is written by hand and stays.

#include <iostream>

#include "document.h"

// Opens a document.
void open(Document& document) {
    // begin open
    document.Load();
    std::cout << document.Title() << "\n";
    // end open
}

// Saves the document that is open.
void save(Document& document) {
    // begin save
    // Nothing is done yet.
    // end save
}

static int CountPages(const Document& document) {
    return document.LineCount() / 60 + 1;
}

// Prints the document that is open.
void print(Document& document) {
    // begin print
    document.Print(1, CountPages(document));
    // end print
}

// Closes it.
void close(Document& document) {
    // begin close
    // Nothing is done yet.
    // end close
}

// end of the commands
