// The grammar of type files. Each production calls one operation of the compiler, which owns all that they fill.

%require "3.8"
%language "C"
%define api.pure full
%define api.prefix {type}
%define api.token.prefix {PINX_}
%define api.value.type {kvl::TypeValue}
%define parse.error custom
// A state with a default reduction reduces before it looks at a wrong token, so that everything complete in front of a syntax
// error has had its effect, and positions are taken before the next token is read.
%define lr.default-reduction most
%expect 0
%param {kvl::TypeCompiler& compiler}

%code top {
// The generator calls this type alike in every grammar, and the program has two.
#define yysymbol_kind_t typesymbol_kind_t
}

%code requires {
#include "frontend/TypeCompiler.h"
}

%code {
// The deepest nesting: 150 entries on the stack. The skeleton counts its start state too and keeps one entry spare. Both
// limits are equal, so that the stack never grows.
#define YYINITDEPTH 152
#define YYMAXDEPTH 152

static int typelex(TYPESTYPE* value, kvl::TypeCompiler& compiler);
static void typeerror(kvl::TypeCompiler& compiler, const char* text);
}

%token IDENTIFIER STRICT_LITERAL WEAK_LITERAL
%token TYPE_MARK NAME_MARK KEYWORD_OPEN KEYWORD_CLOSE TYPE_OPEN
%token BEGIN END KVL VERSION
%token SEQUENCE LIST CHOICE PERMUTATION DISTANCE NESTED STREAM OPTION LINE
%token STRING INTEGER FLOAT BOOL IDENTIFIER_TYPE WHITESPACE_TYPE

%%

type_file:
    type_header type_section type_footer              { if (!compiler.CheckVersions($1, $3)) YYABORT; }
  ;

type_header:
    '$' BEGIN KVL VERSION '=' STRICT_LITERAL '$'      { $$ = compiler.AtThisLine($6); }
  ;

type_footer:
    '$' END KVL VERSION '=' STRICT_LITERAL '$'        { $$ = compiler.AtThisLine($6); }
  ;

type_section:
    TYPE_OPEN type_list '$'
  ;

type_list:
    type_list type_declaration                        { if (!compiler.AddDeclaration()) YYABORT; }
  | %empty
  ;

type_declaration:
    TYPE_MARK declared_name '=' type_body             { compiler.EndDeclaration($2); }
  ;

declared_name:
    IDENTIFIER                                        { $$ = compiler.BeginDeclaration($1); }
  ;

type_body:
    TYPE_MARK root_category
  ;

root_category:
    category '{' element_list '}'                     { compiler.EndRootCategory($1); }
  ;

category:
    SEQUENCE                                          { $$ = compiler.ReadCategory($1, kvl::kCategorySequence); }
  | LIST                                              { $$ = compiler.ReadCategory($1, kvl::kCategoryList); }
  | CHOICE                                            { $$ = compiler.ReadCategory($1, kvl::kCategoryChoice); }
  | PERMUTATION                                       { $$ = compiler.ReadCategory($1, kvl::kCategoryPermutation); }
  | DISTANCE                                          { $$ = compiler.ReadCategory($1, kvl::kCategoryDistance); }
  | NESTED                                            { $$ = compiler.ReadCategory($1, kvl::kCategoryNested); }
  | STREAM                                            { $$ = compiler.ReadCategory($1, kvl::kCategoryStream); }
  | LINE                                              { $$ = compiler.ReadCategory($1, kvl::kCategoryLine); }
  | OPTION                                            { $$ = compiler.ReadCategory($1, kvl::kCategoryOption); }
  ;

element_list:
    %empty                                            { compiler.OpenCategory(); }
  | element_list element                              { if (!compiler.AddElement()) YYABORT; }
  ;

element:
    literal                                           { compiler.EndLiteral(); }
  | KEYWORD_OPEN literal KEYWORD_CLOSE                { compiler.EndKeyword(); }
  | element_name TYPE_MARK element_type               { compiler.EndNamedElement($1); }
  | TYPE_MARK element_type                            { compiler.EndUnnamedElement(); }
  ;

element_name:
    IDENTIFIER                                        { $$ = compiler.ReadElementName($1); }
  ;

literal:
    STRICT_LITERAL                                    { compiler.ReadLiteral($1, kvl::kItemStrictLiteral); }
  | WEAK_LITERAL                                      { compiler.ReadLiteral($1, kvl::kItemWeakLiteral); }
  ;

element_type:
    elementary_type                                   { compiler.EndTyped(); }
  | qualifier NAME_MARK reference                     { compiler.EndQualifiedReference(); }
  | '$' placeholder '$'                               { compiler.EndPlaceholder(); }
  | '$' qualifier NAME_MARK placeholder '$'           { compiler.EndQualifiedPlaceholder(); }
  | category '{' element_list '}'                     { compiler.EndNestedCategory(); }
  ;

qualifier:
    IDENTIFIER                                        { compiler.ReadQualifier($1); }
  ;

reference:
    IDENTIFIER                                        { compiler.ReadReference($1); }
  ;

placeholder:
    IDENTIFIER                                        { compiler.ReadPlaceholder($1); }
  ;

elementary_type:
    STRING                                            { compiler.ReadType($1, kvl::kTypeString); }
  | INTEGER                                           { compiler.ReadType($1, kvl::kTypeInteger); }
  | FLOAT                                             { compiler.ReadType($1, kvl::kTypeFloat); }
  | BOOL                                              { compiler.ReadType($1, kvl::kTypeBool); }
  | IDENTIFIER_TYPE                                   { compiler.ReadType($1, kvl::kTypeIdentifier); }
  | WHITESPACE_TYPE                                   { compiler.ReadType($1, kvl::kTypeWhiteSpace); }
  | IDENTIFIER                                        { compiler.ReadType($1, kvl::kDeclaredTypeName); }
  ;

%%

// A failure that the scanner has reported ends the parse at once and in silence.
static int typelex(TYPESTYPE* value, kvl::TypeCompiler& compiler) {
    const int token = compiler.ReadToken(*value);
    return token == kvl::PinScanX::kFailed ? PINX_TYPEerror : token;
}

static int yyreport_syntax_error(const yypcontext_t*, kvl::TypeCompiler& compiler) {
    compiler.ReportSyntaxError();
    return 0;
}

// Called for nothing but a stack that is full.
static void typeerror(kvl::TypeCompiler& compiler, const char*) {
    compiler.ReportStackOverflow();
}
