void first() {
// begin
    written by hand
// end
}
void second() {
// begin
    by hand, too
// end
}
and more by hand
